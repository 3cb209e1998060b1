#include "HelperKit/BlockRing.h"

#include <algorithm>

namespace vh::helper {

std::span<char> BlockRing::toFill() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return failure_ || filled_ - std::ranges::min(used_) < blocks_.size(); });
    if (failure_)
        return {};
    Block& block = blocks_[filled_ % blocks_.size()];
    block.bytes.resize(blockBytes);
    return block.bytes;
}

void BlockRing::filled(size_t bytes) {
    {
        const std::lock_guard guard(mutex_);
        Block& block = blocks_[filled_ % blocks_.size()];
        block.size = bytes;
        block.offset = offset_;
        offset_ += static_cast<int64_t>(bytes);
        ++filled_;
    }
    changed_.notify_all();
}

void BlockRing::close() {
    {
        const std::lock_guard guard(mutex_);
        closed_ = true;
    }
    changed_.notify_all();
}

void BlockRing::serve(size_t reader, const std::function<void(int64_t, std::string_view)>& use) {
    for (std::unique_lock lock(mutex_);;) {
        changed_.wait(lock, [&] { return failure_ || closed_ || used_[reader] < filled_; });
        if (failure_ || used_[reader] == filled_)
            return;
        const Block& block = blocks_[used_[reader] % blocks_.size()];
        lock.unlock();
        std::exception_ptr failure;
        try {
            use(block.offset, {block.bytes.data(), block.size});
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        ++used_[reader];
        if (failure && !failure_)
            failure_ = failure;
        changed_.notify_all();
    }
}

void BlockRing::rethrow() const {
    if (failure_)
        std::rethrow_exception(failure_);
}

} // namespace vh::helper

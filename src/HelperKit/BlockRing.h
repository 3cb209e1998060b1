#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

namespace vh::helper {

/// A few blocks between one thread that fills them and two that each use all of them, side by side.
class BlockRing {
public:
    static constexpr size_t blockBytes = 4u << 20;
    static constexpr size_t readers = 2;

    /// The next block to fill; none once a reader has failed.
    std::span<char> toFill();
    void filled(size_t bytes);
    /// No more blocks come.
    void close();

    /// Hands all blocks to `use`, in order, on the thread of reader number `reader`. What `use` throws is kept for
    /// rethrow.
    void serve(size_t reader, const std::function<void(int64_t offset, std::string_view block)>& use);
    void rethrow() const;

private:
    struct Block {
        std::vector<char> bytes;
        size_t size = 0;
        int64_t offset = 0;
    };
    std::array<Block, 3> blocks_;
    std::mutex mutex_;
    std::condition_variable changed_;
    uint64_t filled_ = 0;
    std::array<uint64_t, readers> used_{};
    int64_t offset_ = 0;
    bool closed_ = false;
    std::exception_ptr failure_;
};

} // namespace vh::helper

#include "HelperKit/Workers.h"

namespace vh::helper {

Workers::~Workers() {
    {
        std::unique_lock lock(mutex_);
        idle_.wait(lock, [&] { return working_.empty(); });
    }
    joinDone();
}

void Workers::joinDone() {
    std::list<std::thread> done;
    {
        const std::lock_guard lock(mutex_);
        done.swap(done_);
    }
    for (std::thread& thread : done)
        thread.join();
}

bool Workers::start(uint32_t user, std::function<Tell()> work) {
    joinDone();
    const std::lock_guard lock(mutex_);
    size_t& ofUser = ofUser_[user];
    if (placesTaken_ >= most_ || ofUser >= mostOfUser_)
        return false;
    const Thread self = working_.emplace(working_.end());
    try {
        *self = std::thread([this, self, user, kept = std::move(work)] { runAndLeave(self, user, kept); });
    } catch (...) {
        working_.erase(self);
        throw;
    }
    ++ofUser;
    ++placesTaken_;
    return true;
}

void Workers::runAndLeave(Thread self, uint32_t user, const std::function<Tell()>& work) {
    const Tell tell = work();
    {
        const std::lock_guard lock(mutex_);
        --placesTaken_;
        if (--ofUser_[user] == 0)
            ofUser_.erase(user);
    }
    tell();
    const std::lock_guard lock(mutex_);
    done_.splice(done_.end(), working_, self);
    idle_.notify_all();
}

bool Workers::areBusy() const {
    const std::lock_guard lock(mutex_);
    return !working_.empty();
}

} // namespace vh::helper

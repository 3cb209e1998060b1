#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <thread>

namespace vh::helper {

/// Threads for work that blocks, one a piece of work, so many at most and so many for each user: who has all of theirs
/// hang keeps nobody else waiting. Any thread.
class Workers {
public:
    Workers(size_t most, size_t mostOfUser) : most_(most), mostOfUser_(mostOfUser) {}
    /// Waits for all work.
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Tells of the end of a piece of work; called when its place is free again, so that who hears of it may begin the
    /// next at once.
    using Tell = std::function<void()>;
    /// False when too many are at work. Throws std::system_error when the system has no thread left.
    bool start(uint32_t user, std::function<Tell()> work);
    bool areBusy() const;

private:
    using Thread = std::list<std::thread>::iterator;
    void runAndLeave(Thread self, uint32_t user, const std::function<Tell()>& work);
    void joinDone();

    const size_t most_;
    const size_t mostOfUser_;
    mutable std::mutex mutex_;
    std::condition_variable idle_;
    size_t placesTaken_ = 0;
    std::map<uint32_t, size_t> ofUser_; ///< places
    std::list<std::thread> working_;
    std::list<std::thread> done_;
};

} // namespace vh::helper

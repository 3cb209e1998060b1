#pragma once

#include "Platform/CancelToken.h"
#include "Platform/MainLoop.h"

#include <functional>
#include <list>
#include <memory>
#include <thread>

namespace vh::automation {

/// Threads for work that blocks. When the object goes it waits for their end, which its owner hastens; what is posted to
/// the main loop by then is dropped. Main thread.
class Worker {
public:
    explicit Worker(MainLoop& loop);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Calls `work` on a thread of its own, and then `done` on the main thread. Neither may throw.
    void run(std::function<void()> work, std::function<void()> done);
    /// Calls `f` on the main thread, later, unless the worker has gone by then. Any thread.
    void post(std::function<void()> f) const;

private:
    MainLoop& loop_;
    std::shared_ptr<bool> alive_; ///< read and written on the main thread alone
    std::list<std::thread> jobs_;
};

} // namespace vh::automation

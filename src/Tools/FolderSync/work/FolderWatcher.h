#pragma once

#include "Platform/MainLoop.h"
#include "Platform/TreeEvents.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace vh::automation {

class Worker;

/// Says once that a tree has changed, `debounce` after the last change of a burst, and every five minutes in a burst
/// that never ends. Main thread; the tree is walked on the worker's threads, so a disk that does not answer holds up
/// nobody but them.
class FolderWatcher {
public:
    struct Events {
        std::function<void()> onStarted; ///< what changes from now on is told
        std::function<void()> onChange;
        std::function<void()> onRootChanged;                  ///< it is gone: the watcher no longer runs
        std::function<void(const SystemError& why)> onFailed; ///< it did not start, or no longer runs
    };
    /// What happens in the folder `except` is not told. The worker outlives it, and may be left with a walk that ends
    /// soon.
    FolderWatcher(MainLoop& loop, Worker& worker, std::string folder, std::string except,
                  std::chrono::milliseconds debounce, Events events);
    ~FolderWatcher();
    FolderWatcher(const FolderWatcher&) = delete;
    FolderWatcher& operator=(const FolderWatcher&) = delete;

    /// True from onStarted until onRootChanged or onFailed.
    bool isRunning() const;

private:
    struct State;
    const std::shared_ptr<State> state_;
};

} // namespace vh::automation

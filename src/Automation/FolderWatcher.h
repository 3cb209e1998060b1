#pragma once

#include "Automation/Worker.h"
#include "Platform/MainLoop.h"
#include "Platform/TreeEvents.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace vh::automation {

/// Says once that a tree has changed, `debounce` after the last change of a burst. Main thread; a large tree is walked
/// on a thread of its own.
class FolderWatcher {
public:
    struct Events {
        std::function<void()> onChange;
        std::function<void()> onRootChanged;                  ///< it is gone: the watcher no longer runs
        std::function<void(const std::string& why)> onFailed; ///< it could not start, or watches only a part
    };
    FolderWatcher(MainLoop& loop, std::string folder, std::chrono::milliseconds debounce, Events events);
    ~FolderWatcher();
    FolderWatcher(const FolderWatcher&) = delete;
    FolderWatcher& operator=(const FolderWatcher&) = delete;

    bool isRunning() const { return tree_.has_value(); }

private:
    MainLoop& loop_;
    const std::string folder_;
    const std::chrono::milliseconds debounce_;
    const Events events_;
    std::optional<TreeEvents> tree_;
    MainLoop::Token watching_;
    MainLoop::Token pending_;
    Worker walking_;
};

} // namespace vh::automation

#pragma once

#include "Platform/FolderEvents.h"
#include "Platform/MainLoop.h"

#include <functional>
#include <optional>
#include <string>

namespace vh::automation {

/// Says that something in a folder of the program's own changed, whoever did it; changes that come together are said
/// once. A folder that goes away or cannot be watched is watched again when it can be. Main thread.
class FolderNews {
public:
    FolderNews(MainLoop& loop, std::string folder, std::function<void()> changed);
    FolderNews(const FolderNews&) = delete;
    FolderNews& operator=(const FolderNews&) = delete;

private:
    void watch();
    void take();
    void say();

    MainLoop& loop_;
    const std::string folder_;
    const std::function<void()> changed_;
    std::optional<FolderEvents> watcher_;
    MainLoop::Token watching_;
    MainLoop::Token later_;
    bool isWaiting_ = false; ///< to say what was taken
    bool isGone_ = false;
};

} // namespace vh::automation

#pragma once

#include "Core/Date.h"
#include "Features/Flows/FlowTrigger.h"
#include "Platform/FolderEvents.h"
#include "Platform/MainLoop.h"

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <unordered_set>
#include <vector>

namespace vh::flows {

/// Watches one folder for files that arrive and lie still. What lies there at the start never counts, nor do folders,
/// links, hidden files and names of downloads and copies under way; a name that went away may arrive again. At rest it
/// costs nothing; while something is pending it looks at those files alone. Main thread.
class FolderArrivals {
public:
    /// Gets the full paths; true when it took them.
    using OnReady = std::function<bool(const std::vector<std::string>& files)>;

    /// Throws SystemError when the folder cannot be watched or listed.
    FolderArrivals(MainLoop& loop, OnNewFiles settings, OnReady onReady, Clock clock = systemNow);
    FolderArrivals(const FolderArrivals&) = delete;
    FolderArrivals& operator=(const FolderArrivals&) = delete;

    const OnNewFiles& settings() const { return settings_; }
    /// The folder went away: this object will see nothing more.
    bool isGone() const { return isGone_; }

private:
    struct Pending {
        int64_t byteSize = 0;
        int64_t modifiedSeconds = 0; ///< moves also where the space was set aside before the bytes came
        Date since;
    };
    void watch();
    void take();
    void lookAtAll();
    void look(const std::string& name);
    void settle();
    void keepTime();

    MainLoop& loop_;
    const OnNewFiles settings_;
    const OnReady onReady_;
    const Clock clock_;
    FolderEvents watcher_;
    std::unordered_set<std::string> known_; ///< names of files that are there and do not count any more
    std::map<std::string, Pending> pending_;
    bool isGone_ = false;
    MainLoop::Token watching_; ///< or the pause before watching goes on
    MainLoop::Token timer_;
    bool wasRefused_ = false;
};

} // namespace vh::flows

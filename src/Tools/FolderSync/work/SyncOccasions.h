#pragma once

#include "Core/Date.h"
#include "Platform/MainLoop.h"
#include "Platform/MountWatcher.h"

#include <functional>
#include <optional>
#include <set>
#include <string>

namespace vh::automation {

/// When a watcher of folders has to look again of its own accord. Main thread.
class SyncOccasions {
public:
    struct Events {
        std::function<void()> onWake; ///< the machine slept, or its clock was set
        std::function<void(const std::set<std::string>& mounted, const std::set<std::string>& unmounted)>
            onMounts;
        std::function<void()> onTime; ///< every five minutes
    };
    SyncOccasions(MainLoop& loop, Clock clock, Events events);

private:
    void tick();
    void mountsChanged();

    const Clock clock_;
    const Events events_;
    Date last_;
    int ticks_ = 0;
    std::set<std::pair<unsigned, std::string>>
        mounts_; ///< by the kernel's number, for one place may be mounted anew
    std::optional<MountWatcher> watcher_;
    MainLoop::Token ticking_;
    MainLoop::Token watching_;
};

} // namespace vh::automation

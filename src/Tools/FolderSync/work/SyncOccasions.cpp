#include "Tools/FolderSync/work/SyncOccasions.h"

#include "Platform/SystemError.h"
#include "Platform/Volumes.h"

#include <chrono>

namespace vh::automation {

namespace {

constexpr std::chrono::seconds tickPeriod{30};
constexpr int ticksBetweenLooks = 10;
/// By which the clock may differ from the time that passed.
constexpr std::chrono::seconds tolerance{10};

using Mounts = std::set<std::pair<unsigned, std::string>>;

Mounts mountsNow() {
    Mounts mounts;
    for (const MountEntry& each : mountTable())
        mounts.emplace(each.id, each.path);
    return mounts;
}

std::set<std::string> pathsOnlyIn(const Mounts& one, const Mounts& other) {
    std::set<std::string> paths;
    for (const auto& each : one)
        if (!other.contains(each))
            paths.insert(each.second);
    return paths;
}

} // namespace

SyncOccasions::SyncOccasions(MainLoop& loop, Clock clock, Events events)
    : clock_(std::move(clock)), events_(std::move(events)), last_(clock_()) {
    ticking_ = loop.every(tickPeriod, [this] { tick(); });
    try {
        watcher_.emplace();
        watching_ =
            loop.watch(watcher_->descriptor(), MainLoop::Readiness::exceptional, [this] { mountsChanged(); });
        mounts_ = mountsNow();
    } catch (const SystemError&) {
        watching_.reset(); // a disk that comes is noticed with time
    }
}

void SyncOccasions::tick() {
    const Date now = clock_();
    const auto passed = now - std::exchange(last_, now);
    if (passed < tickPeriod - tolerance || passed > tickPeriod + tolerance)
        events_.onWake();
    else if (++ticks_ % ticksBetweenLooks == 0)
        events_.onTime();
}

void SyncOccasions::mountsChanged() {
    watcher_->acknowledge();
    const Mounts before = std::exchange(mounts_, mountsNow());
    const auto mounted = pathsOnlyIn(mounts_, before), unmounted = pathsOnlyIn(before, mounts_);
    if (!mounted.empty() || !unmounted.empty())
        events_.onMounts(mounted, unmounted);
}

} // namespace vh::automation

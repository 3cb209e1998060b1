#include "Features/Flows/work/FlowTriggers.h"

#include "Features/Flows/NodesStore.h"
#include "Features/Flows/work/FlowFolders.h"
#include "Platform/Desktop.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <map>
#include <set>

namespace vh::automation {

using flows::Flow;
using flows::FlowRunTrigger;
using flows::FlowVolume;

namespace {

constexpr std::chrono::seconds idleStep{30};

/// Whether the same volume is still mounted there; what is known of one may come late.
bool isSame(const FlowVolume& a, const FlowVolume& b) {
    if (a.uuid && b.uuid)
        return a.uuid == b.uuid;
    return a.name == b.name && a.host == b.host && a.share == b.share && a.isNetwork == b.isNetwork;
}

std::map<std::string, FlowVolume> byPath(std::vector<FlowVolume> volumes) {
    std::map<std::string, FlowVolume> map;
    for (FlowVolume& each : volumes)
        map.insert_or_assign(each.path, std::move(each));
    return map;
}

} // namespace

struct FlowTriggers::State {
    State(const AutomationDependencies& w, flows::NodesStore& s, NodesRunner& r, Desktop& d,
          std::function<std::vector<VolumeFacts>()> v)
        : dependencies(w), store(s), runner(r), desktop(d), volumesNow(std::move(v)),
          folders(dependencies, store,
                  [this](const Uuid& flow, const auto& files, const std::string& folder) {
                      return arrived(flow, files, folder);
                  }) {}

    void start();
    void refresh();
    void watchMounts();
    void mountsChanged();
    void mounted(const FlowVolume& volume);
    void unmounted(const FlowVolume& volume);
    void watchPower();
    void powerChanged();
    void watchIdle();
    void checkIdle();
    bool arrived(const Uuid& id, const std::vector<std::string>& files, const std::string& folder);
    void tellTroubles();

    /// Own and company flows that start so, as they are now.
    template <class On, class Accepts>
    std::vector<Flow> startedBy(Accepts accepts) const;
    template <class On, class Accepts>
    void fire(const FlowStart& how, Accepts accepts) {
        for (const Flow& flow : startedBy<On>(accepts))
            runner.start(flow, how);
    }
    template <class On>
    bool hasFlow() const {
        return !startedBy<On>([](const auto&, const Flow&) { return true; }).empty();
    }
    std::string event(std::string_view key, const std::vector<TextArgument>& arguments = {}) const {
        return dependencies.texts().text(key, arguments);
    }

    const AutomationDependencies& dependencies;
    flows::NodesStore& store;
    NodesRunner& runner;
    Desktop& desktop;
    const std::function<std::vector<VolumeFacts>()> volumesNow;
    FlowFolders folders;
    std::map<std::string, FlowVolume> volumes; ///< as last seen; what is gone can be matched by nothing else
    std::optional<bool> onMains;
    std::set<Uuid> idleStarted; ///< in this stretch of idleness
    std::optional<std::string> mountTrouble;
    std::optional<std::string> powerTrouble;
    std::vector<std::string> toldTroubles;
    std::function<void()> onTroubles;

    bool isStarted = false;
    std::optional<MountWatcher> mounts;
    std::shared_ptr<void> observing;
    MainLoop::Token launching;
    MainLoop::Token refreshing;
    MainLoop::Token watchingMounts;
    MainLoop::Token watchingPower;
    MainLoop::Token idleTimer;
};

template <class On, class Accepts>
std::vector<Flow> FlowTriggers::State::startedBy(Accepts accepts) const {
    std::vector<Flow> found;
    const auto look = [&](const Flow& flow) {
        const flows::FlowTrigger* start = flow.start();
        const On* on = start ? std::get_if<On>(start) : nullptr;
        if (on && flows::isFilledIn(*start, flow.id) && accepts(*on, flow))
            found.push_back(flow);
    };
    for (const Flow& flow : store.flows())
        look(flow);
    for (const flows::CompanyFlow& each : store.companyFlows())
        look(each.flow);
    return found;
}

void FlowTriggers::State::start() {
    if (std::exchange(isStarted, true))
        return;
    watchMounts();
    // What changes the flows may be in the middle of a callback of what is watched, so it is looked at later.
    observing = store.observe([this] {
        refreshing = dependencies.loop.after(std::chrono::milliseconds(0), [this] { refresh(); });
    });
    refresh();
    launching = dependencies.loop.after(std::chrono::milliseconds(0), [this] {
        fire<flows::OnLaunch>({.trigger = FlowRunTrigger::launch, .event = event("nodes.event.launch")},
                              [](const auto&, const Flow&) { return true; });
    });
}

void FlowTriggers::State::refresh() {
    folders.refresh();
    watchPower();
    watchIdle();
    tellTroubles();
}

void FlowTriggers::State::tellTroubles() {
    std::vector<std::string> troubles = folders.troubles();
    for (const auto& each : {mountTrouble, powerTrouble})
        if (each)
            troubles.push_back(*each);
    if (std::exchange(toldTroubles, troubles) != troubles && onTroubles)
        onTroubles();
}

void FlowTriggers::State::watchMounts() {
    try {
        mounts.emplace();
        watchingMounts = dependencies.loop.watch(mounts->descriptor(), MainLoop::Readiness::exceptional,
                                                 [this] { mountsChanged(); });
    } catch (const SystemError& error) {
        mountTrouble = event("nodes.trouble.mounts", {{"reason", error.what()}});
    }
    volumes = byPath(volumesNow());
}

void FlowTriggers::State::mountsChanged() {
    mounts->acknowledge();
    const auto before = std::exchange(volumes, byPath(volumesNow()));
    const auto now = volumes;
    folders.refresh();
    tellTroubles();
    const auto stays = [](const auto& where, const FlowVolume& volume) {
        const auto found = where.find(volume.path);
        return found != where.end() && isSame(found->second, volume);
    };
    for (const auto& [path, volume] : before)
        if (!stays(now, volume))
            unmounted(volume);
    for (const auto& [path, volume] : now)
        if (!stays(before, volume))
            mounted(volume);
}

void FlowTriggers::State::mounted(const FlowVolume& volume) {
    flows::FlowValues values;
    values.disk = volume.path;
    values.diskName = volume.name;
    fire<flows::OnDiskMounted>({.trigger = FlowRunTrigger::diskMounted,
                                .event = event("nodes.event.mounted", {{"name", volume.name}}),
                                .values = values},
                               [&](const auto& on, const Flow&) { return on.match.matches(volume); });
    if (!volume.isNetwork)
        return;
    values.diskName = volume.share.empty() ? volume.name : volume.share;
    fire<flows::OnShareMounted>(
        {.trigger = FlowRunTrigger::shareMounted,
         .event = event("nodes.event.share", {{"name", *values.diskName}, {"host", volume.host}}),
         .values = values},
        [&](const auto& on, const Flow&) { return on.share.matches(std::nullopt, volume.host); });
}

void FlowTriggers::State::unmounted(const FlowVolume& volume) {
    flows::FlowValues values;
    values.diskName = volume.name;
    fire<flows::OnDiskUnmounted>({.trigger = FlowRunTrigger::diskUnmounted,
                                  .event = event("nodes.event.unmounted", {{"name", volume.name}}),
                                  .values = values},
                                 [&](const auto& on, const Flow&) { return on.match.matches(volume); });
}

void FlowTriggers::State::watchPower() {
    if (!hasFlow<flows::OnPower>()) {
        watchingPower.reset();
        powerTrouble.reset();
        return;
    }
    if (watchingPower)
        return;
    try {
        onMains = desktop.isOnMains();
        watchingPower = desktop.watchPower(dependencies.loop, [this] { powerChanged(); });
        powerTrouble.reset();
    } catch (const std::runtime_error& error) {
        powerTrouble = event("nodes.trouble.power", {{"reason", error.what()}});
    }
}

void FlowTriggers::State::powerChanged() {
    const auto now = desktop.isOnMains();
    if (!now)
        return;
    if (std::exchange(onMains, now) == false && *now)
        fire<flows::OnPower>({.trigger = FlowRunTrigger::power, .event = event("nodes.event.power")},
                             [](const auto&, const Flow&) { return true; });
}

void FlowTriggers::State::watchIdle() {
    if (!hasFlow<flows::OnIdle>()) {
        idleTimer.reset();
        idleStarted.clear();
    } else if (!idleTimer) {
        idleTimer = dependencies.loop.every(idleStep, [this] { checkIdle(); });
    }
}

void FlowTriggers::State::checkIdle() {
    const auto idle = desktop.idleTime();
    if (!idle)
        return;
    const auto isIdle = [&](const flows::OnIdle& on, const Flow&) {
        return *idle >= std::chrono::minutes(on.minutes);
    };
    std::set<Uuid> started;
    for (const Flow& flow : startedBy<flows::OnIdle>(isIdle)) {
        started.insert(flow.id);
        if (idleStarted.contains(flow.id))
            continue;
        const int minutes = std::get<flows::OnIdle>(*flow.start()).minutes;
        runner.start(flow, {.trigger = FlowRunTrigger::idle,
                            .event = event("nodes.event.idle", {{"minutes", minutes}})});
    }
    idleStarted = std::move(started);
}

bool FlowTriggers::State::arrived(const Uuid& id, const std::vector<std::string>& files,
                                  const std::string& folder) {
    const Flow* flow = store.anyFlow(id);
    if (!flow)
        return true;
    flows::FlowValues values;
    values.files = files;
    values.folder = folder;
    // A flow that runs gets the files at its next start, while one that cannot be started never would.
    return runner.start(Flow(*flow), {.trigger = FlowRunTrigger::newFiles,
                                      .event = event("nodes.event.files", {{"count", files.size()}}),
                                      .values = values}) ||
           !runner.isRunning(id);
}

FlowTriggers::FlowTriggers(const AutomationDependencies& dependencies, flows::NodesStore& store,
                           NodesRunner& runner, Desktop& desktop,
                           std::function<std::vector<VolumeFacts>()> volumes)
    : state_(std::make_unique<State>(dependencies, store, runner, desktop, std::move(volumes))) {}

FlowTriggers::~FlowTriggers() = default;

void FlowTriggers::start() {
    state_->start();
}

void FlowTriggers::finished(const Flow& flow, flows::FlowNodeOutcome outcome,
                            const std::vector<Uuid>& chain) {
    FlowStart how{.trigger = FlowRunTrigger::afterFlow,
                  .event = state_->event("nodes.event.after", {{"name", flow.name}}),
                  .chain = chain};
    how.chain.push_back(flow.id);
    state_->fire<flows::OnFlowFinished>(how, [&](const auto& on, const Flow& next) {
        return on.after.flow == flow.id && flows::accepts(on.after.when, outcome) &&
               std::ranges::find(how.chain, next.id) == how.chain.end();
    });
}

std::vector<std::string> FlowTriggers::troubles() const {
    return state_->toldTroubles;
}

void FlowTriggers::setOnTroubles(std::function<void()> f) {
    state_->onTroubles = std::move(f);
}

} // namespace vh::automation

#include "Features/Flows/NodesStore.h"

#include "Core/Codec.h"
#include "Core/ItemRemoval.h"
#include "Core/Observers.h"
#include "Features/Flows/FlowFiles.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/Folders.h"
#include "Platform/SystemError.h"

#include <algorithm>

namespace vh::flows {

struct NodesStore::State {
    ScheduleStore& schedules;
    Clock clock;
    LocalCalendar calendar;
    FlowFolder own;
    FlowFolder company;
    bool isLoaded = false;
    std::vector<Flow> flows;
    std::vector<CompanyFlow> companyFlows;
    std::vector<std::string> damaged;
    Observers<> observers;

    void loadOnce() {
        if (!isLoaded)
            refresh();
    }
    /// Whether anything changed.
    bool refresh();
    void changed() {
        refresh();
        observers.tell();
    }
    FlowFolder& folderOf(const Uuid& id) { return company.contains(id) ? company : own; }

    FileLock lock() const {
        makeFolders(own.path());
        return FileLock(own.path() + "/.lock");
    }
    std::string noteOf(const Uuid& id) const { return own.path() + "/" + id.text() + ".running"; }

    void mirror(const Flow& flow, const std::string& from);
    void remove(const FlowFolder& folder, const Uuid& id);
    void store(const FlowRun& run);
};

bool NodesStore::State::refresh() {
    const bool isOther = own.refresh() | company.refresh() | !isLoaded;
    isLoaded = true;
    if (!isOther)
        return false;
    flows.clear();
    for (CompanyFlow& each : own.flows())
        flows.push_back(std::move(each.flow));
    companyFlows = company.flows();
    std::ranges::stable_sort(flows, std::greater(), &Flow::updatedAt);
    std::ranges::stable_sort(companyFlows, std::greater(),
                             [](const CompanyFlow& each) { return each.flow.updatedAt; });
    damaged = own.damaged();
    const auto more = company.damaged();
    damaged.insert(damaged.end(), more.begin(), more.end());
    return true;
}

void NodesStore::State::mirror(const Flow& flow, const std::string& from) {
    const FlowTrigger* trigger = flow.start();
    const auto* on = trigger ? std::get_if<OnSchedule>(trigger) : nullptr;
    if (!on || !isFilledIn(*trigger, flow.id)) {
        if (schedules.task(flow.id))
            schedules.remove(flow.id);
        return;
    }
    ScheduledTask fresh = makeTask(flow.name, "nodes", std::string(flowAction), {{"flow", flow.id.text()}},
                                   on->schedule, on->runIfMissed, clock(), calendar);
    fresh.id = flow.id;
    if (!from.empty())
        fresh.company = from;
    const auto update = [&](ScheduledTask& task) {
        ScheduledTask next = fresh;
        next.isEnabled = task.isEnabled;
        next.lastRun = task.lastRun;
        next.lastOutcome = task.lastOutcome;
        if (task.schedule == fresh.schedule && task.nextRun)
            next.nextRun = task.nextRun;
        task = std::move(next);
    };
    const auto existing = schedules.task(flow.id);
    ScheduledTask wanted = existing.value_or(fresh);
    update(wanted);
    if (existing == wanted)
        return;
    if (!schedules.change(flow.id, update))
        schedules.upsert(fresh);
}

void NodesStore::State::remove(const FlowFolder& folder, const Uuid& id) {
    if (!statusOf(folder.fileOf(id)))
        return;
    {
        const FileLock held = lock();
        removeItem(folder.fileOf(id), RemovalMethod::trash);
        try {
            if (statusOf(folder.runsFileOf(id)))
                removeItem(folder.runsFileOf(id), RemovalMethod::trash);
        } catch (const SystemError&) {
            // Runs without a flow are shown nowhere; a flow that comes back has them.
        }
        if (schedules.task(id))
            schedules.remove(id);
    }
    changed();
}

/// The caller holds the lock.
void NodesStore::State::store(const FlowRun& run) {
    const FlowFolder& folder = folderOf(run.flowID);
    auto runs = readRuns(folder.runsFileOf(run.flowID));
    const bool isThere = std::ranges::find(runs, run.id, &FlowRun::id) != runs.end();
    // A flow that was removed while it ran leaves nothing behind.
    if (!isThere && statusOf(folder.fileOf(run.flowID))) {
        runs.insert(runs.begin(), run);
        if (runs.size() > keptRuns)
            runs.resize(keptRuns);
        writeFileAtomically(folder.runsFileOf(run.flowID), encodeJson(runs, JsonStyle::pretty) + "\n");
    }
    if (statusOf(noteOf(run.flowID)))
        removeItem(noteOf(run.flowID), RemovalMethod::permanent);
}

NodesStore::NodesStore(std::string folder, ScheduleStore& schedules, Clock clock, LocalCalendar calendar)
    : folder_(std::move(folder)),
      state_(std::make_shared<State>(State{.schedules = schedules,
                                           .clock = std::move(clock),
                                           .calendar = std::move(calendar),
                                           .own = FlowFolder(folder_, false),
                                           .company = FlowFolder(folder_ + "/company", true)})) {}

std::string NodesStore::folderOfUser() {
    return Folders::ofUser().data + "/Varnholt/flows";
}

void NodesStore::load() {
    if (state_->refresh())
        state_->observers.tell();
}

const std::vector<Flow>& NodesStore::flows() {
    state_->loadOnce();
    return state_->flows;
}

const std::vector<CompanyFlow>& NodesStore::companyFlows() {
    state_->loadOnce();
    return state_->companyFlows;
}

const Flow* NodesStore::flow(const Uuid& id) {
    const auto found = std::ranges::find(flows(), id, &Flow::id);
    return found == state_->flows.end() ? nullptr : &*found;
}

const Flow* NodesStore::anyFlow(const Uuid& id) {
    if (const Flow* own = flow(id))
        return own;
    const auto found =
        std::ranges::find(state_->companyFlows, id, [](const auto& each) { return each.flow.id; });
    return found == state_->companyFlows.end() ? nullptr : &found->flow;
}

bool NodesStore::isCompany(const Uuid& id) {
    state_->loadOnce();
    return state_->company.contains(id);
}

std::vector<FlowRun> NodesStore::runs(const Uuid& id) {
    state_->loadOnce();
    return readRuns(state_->folderOf(id).runsFileOf(id));
}

std::optional<FlowRun> NodesStore::lastRun(const Uuid& id) {
    state_->loadOnce();
    return readLastRun(state_->folderOf(id).runsFileOf(id));
}

std::optional<FlowRun> NodesStore::run(const Uuid& id, const Uuid& run) {
    state_->loadOnce();
    return readRun(state_->folderOf(id).runsFileOf(id), run);
}

const std::vector<std::string>& NodesStore::damaged() {
    state_->loadOnce();
    return state_->damaged;
}

Flow NodesStore::save(Flow flow) {
    state_->loadOnce();
    flow.updatedAt = std::chrono::floor<std::chrono::seconds>(state_->clock()); // as it will be read
    {
        const FileLock held = state_->lock();
        writeFileAtomically(state_->own.fileOf(flow.id), encodeJson(flow, JsonStyle::pretty) + "\n");
        state_->mirror(flow, "");
    }
    state_->changed();
    return flow;
}

void NodesStore::remove(const Uuid& id) {
    state_->loadOnce();
    state_->remove(state_->own, id);
}

std::optional<Flow> NodesStore::duplicate(const Uuid& id, const std::string& name) {
    const Flow* original = anyFlow(id);
    if (!original)
        return std::nullopt;
    Flow copy = original->renewed();
    copy.name = name;
    return save(std::move(copy));
}

std::string NodesStore::freeName(const std::function<std::string(int)>& pattern) {
    load();
    for (int number = 1;; ++number) {
        std::string name = pattern(number);
        if (std::ranges::find(flows(), name, &Flow::name) == flows().end())
            return name;
    }
}

void NodesStore::record(const FlowRun& run) {
    state_->loadOnce();
    {
        const FileLock held = state_->lock();
        state_->store(run);
    }
    state_->observers.tell();
}

void NodesStore::setCompany(const Flow& flow, const std::string& from) {
    state_->loadOnce();
    {
        const FileLock held = state_->lock();
        makeFolders(state_->company.path());
        writeFileAtomically(state_->company.fileOf(flow.id),
                            encodeJson(CompanyFlow{flow, from}, JsonStyle::pretty) + "\n");
        state_->mirror(flow, from);
    }
    state_->changed();
}

void NodesStore::removeCompany(const Uuid& id) {
    state_->loadOnce();
    state_->remove(state_->company, id);
}

FileLock NodesStore::lockForRun(const Uuid& id) const {
    makeFolders(folder_);
    return FileLock::tryLock(folder_ + "/" + id.text() + ".lock");
}

void NodesStore::noteStarted(const FlowRun& run) const {
    writeRunNote(state_->noteOf(run.flowID), run);
}

void NodesStore::noteResult(const FlowRun& run, const Uuid& node, const FlowNodeResult& result) const {
    addToRunNote(state_->noteOf(run.flowID), node, result);
}

std::vector<FlowRun> NodesStore::takeInterrupted() {
    std::vector<FlowRun> taken;
    state_->loadOnce();
    if (!statusOf(folder_))
        return taken;
    for (const std::string& name : childNames(folder_)) {
        const auto id = idOfName(name, ".running");
        if (!id)
            continue;
        try {
            const FileLock held = lockForRun(*id);
            if (!held)
                continue; // it goes on
            auto run = readRunNote(state_->noteOf(*id));
            if (run && run->flowID == *id) {
                record(*run);
                taken.push_back(std::move(*run));
            } else if (statusOf(state_->noteOf(*id))) {
                removeItem(state_->noteOf(*id), RemovalMethod::permanent);
            }
        } catch (const SystemError&) {
            // What cannot be read or stored now is left for the next.
        }
    }
    return taken;
}

std::shared_ptr<void> NodesStore::observe(std::function<void()> observer) {
    return state_->observers.add(std::move(observer));
}

} // namespace vh::flows

#include "Features/Schedules/work/Scheduler.h"

#include "Automation/FolderNews.h"
#include "Automation/ScheduledActions.h"
#include "Core/Observers.h"
#include "Core/RunJournal.h"
#include "Core/RunLog.h"
#include "Features/Schedules/work/TaskTurn.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <filesystem>

namespace vh::automation {

namespace {

constexpr std::chrono::seconds tickPeriod{30};

Trigger triggerOf(const ScheduledTask& task) {
    return task.company ? Trigger::company : Trigger::scheduled;
}

/// With tool and trigger as the run's record will have them: a flow's is the same whoever set its task.
TaskClaim claimOf(const ScheduledTask& task, bool advance, Date now) {
    const auto due = advance ? task.nextRun : std::nullopt;
    if (task.actionID == flowAction)
        return {task.id, task.title, "nodes", Trigger::scheduled, due, now};
    return {task.id, task.title, task.toolID, triggerOf(task), due, now};
}

} // namespace

struct Scheduler::State {
    State(Scheduler& scheduler, MainLoop& loop) : owner(scheduler), worker(loop) {}

    void tick();
    void runQueue();
    std::shared_ptr<TaskTurn> takeTurn();
    void settle(const TaskClaim& claim);
    void skipMissed(Date now);
    void mendFuture(Date now);
    void begin(const ScheduledTask& task, bool advance, std::shared_ptr<TaskTurn> turn);
    RunRecord execute(const ScheduledTask& task, bool advance, const JobControl& control);
    void finished(const std::string& title, const RunRecord& record);
    void watch();
    void publish();
    Date now() const { return owner.dependencies_.clock(); }
    Texts texts() const { return owner.dependencies_.texts(); }

    Scheduler& owner;
    CancelToken cancel;
    std::vector<ScheduledTask> queue; ///< due, and waiting for their turn
    Observers<> observers;
    MainLoop::Token timer;
    std::optional<FolderNews> news;
    Worker worker; ///< its threads use what stands above
    std::shared_ptr<void> storeToken;
};

Scheduler::Scheduler(const AutomationDependencies& dependencies, ScheduleStore& store,
                     const ScheduledActions& actions)
    : dependencies_(dependencies), store_(store), actions_(actions), tasks_(store.tasks()),
      state_(std::make_unique<State>(*this, dependencies.loop)) {
    state_->storeToken =
        store_.observe([state = state_.get()] { state->worker.post([state] { state->publish(); }); });
}

Scheduler::~Scheduler() {
    state_->cancel.cancel();
}

void Scheduler::start() {
    State& s = *state_;
    if (s.timer)
        return;
    s.watch();
    s.takeTurn(); // settles what a killed process left
    s.skipMissed(s.now());
    s.publish();
    s.timer = dependencies_.loop.every(tickPeriod, [&s] { s.tick(); });
    s.worker.post([&s] { s.tick(); });
}

void Scheduler::State::tick() {
    if (owner.runningTaskID_)
        return;
    mendFuture(now());
    for (ScheduledTask& task : owner.store_.due(now()))
        if (std::ranges::find(queue, task.id, &ScheduledTask::id) == queue.end())
            queue.push_back(std::move(task));
    // What waits for another process's task is late through no fault of its own.
    if (queue.empty())
        skipMissed(now());
    runQueue();
}

void Scheduler::State::runQueue() {
    while (!queue.empty() && !owner.runningTaskID_) {
        auto turn = takeTurn();
        if (!turn)
            return; // a later tick tries again
        const ScheduledTask waiting = queue.front();
        queue.erase(queue.begin());
        // It may have been run, changed or removed since it was put in the queue.
        const auto task = owner.store_.task(waiting.id);
        if (task && task->isEnabled && task->nextRun == waiting.nextRun)
            begin(*task, true, std::move(turn));
    }
}

/// Nothing while another process runs a task, or when that cannot be found out.
std::shared_ptr<TaskTurn> Scheduler::State::takeTurn() {
    try {
        std::shared_ptr<TaskTurn> turn = TaskTurn::take(owner.store_.fileURL());
        if (const auto claim = turn ? turn->leftover() : std::nullopt)
            settle(*claim);
        return turn;
    } catch (const SystemError& error) {
        owner.lastMessage_ = error.what();
        observers.tell();
        return nullptr;
    }
}

/// A task whose process was killed has failed, unless its run is in the log.
void Scheduler::State::settle(const TaskClaim& claim) {
    RunLog& log = owner.dependencies_.runs.log;
    const auto interrupted = [&](const std::string& title) {
        return RunWords({{"run.interrupted", {{"title", title}}}}, texts());
    };
    owner.dependencies_.runs.journals.recoverInterrupted(interrupted); // what had been done is told there
    std::optional<Outcome> left;
    for (const RunRecord& record : log.since(std::chrono::floor<std::chrono::seconds>(claim.startedAt)))
        if (record.toolID == claim.toolID && record.trigger == claim.trigger)
            left = record.outcome;
    if (!left) {
        RunWords words = interrupted(claim.title);
        log.record({.id = Uuid::random(),
                    .toolID = claim.toolID,
                    .startedAt = claim.startedAt,
                    .outcome = Outcome::failed,
                    .trigger = claim.trigger,
                    .summary = std::move(words.summary),
                    .metrics = {{std::string(rawValue(RunMetric::errors)), 1}},
                    .computer = RunLog::thisComputer(),
                    .facts = std::move(words.facts)});
    }
    owner.store_.change(claim.task, [&](ScheduledTask& task) {
        task.lastRun = claim.startedAt;
        task.lastOutcome = left.value_or(Outcome::failed);
        if (claim.due && task.nextRun && *task.nextRun <= now())
            task.nextRun = nextRun(task.schedule, now(), owner.dependencies_.calendar);
    });
}

void Scheduler::State::skipMissed(Date now) {
    const auto skipped = owner.store_.skipMissed(now);
    if (skipped.empty())
        return;
    owner.lastMessage_ = texts().text("scheduler.skipped-missed", {{"count", skipped.size()}});
    publish();
}

/// After the clock was set back a task would wait for a time that is far away.
void Scheduler::State::mendFuture(Date now) {
    const LocalCalendar& calendar = owner.dependencies_.calendar;
    for (const ScheduledTask& each : owner.store_.tasks())
        if (each.isEnabled && each.nextRun && *each.nextRun > nextRun(each.schedule, now, calendar))
            owner.store_.markRun(each.id, now, std::nullopt);
}

void Scheduler::State::begin(const ScheduledTask& task, bool advance, std::shared_ptr<TaskTurn> turn) {
    turn->claim(claimOf(task, advance, now()));
    owner.runningTaskID_ = task.id;
    owner.progressText_.clear();
    cancel = CancelToken();
    const JobControl control{cancel, [this](double, std::string_view what) {
                                 worker.post([this, text = std::string(what)] {
                                     owner.progressText_ = text;
                                     observers.tell();
                                 });
                             }};
    const auto record = std::make_shared<RunRecord>();
    worker.run(
        [this, task, advance, control, turn, record] {
            *record = execute(task, advance, control);
            turn->end();
        },
        [this, title = task.title, record] { finished(title, *record); });
    observers.tell();
}

/// On the worker's thread, so that the task is marked even when the program is about to end.
RunRecord Scheduler::State::execute(const ScheduledTask& task, bool advance, const JobControl& control) {
    RunRecord record = owner.actions_.run(task, triggerOf(task), control);
    if (advance)
        owner.store_.markRun(task.id, now(), record.outcome);
    else
        owner.store_.change(task.id, [&](ScheduledTask& kept) {
            kept.lastRun = now();
            kept.lastOutcome = record.outcome;
        });
    return record;
}

void Scheduler::State::finished(const std::string& title, const RunRecord& record) {
    owner.runningTaskID_.reset();
    owner.progressText_.clear();
    owner.lastRecord_ = record;
    owner.lastMessage_ = title + ": " + record.summary;
    publish();
    runQueue();
}

/// Notices what other processes do to the tasks.
void Scheduler::State::watch() {
    if (!news)
        news.emplace(owner.dependencies_.loop, std::filesystem::path(owner.store_.fileURL()).parent_path(),
                     [this] {
                         if (owner.store_.tasks() != owner.tasks_)
                             publish();
                     });
}

void Scheduler::State::publish() {
    owner.tasks_ = owner.store_.tasks();
    observers.tell();
}

bool Scheduler::runNow(const Uuid& id) {
    const auto task = store_.task(id);
    auto turn = task && !runningTaskID_ ? state_->takeTurn() : nullptr;
    if (!turn)
        return false;
    state_->begin(*task, false, std::move(turn));
    return true;
}

void Scheduler::stopRunning() {
    state_->cancel.cancel();
}

void Scheduler::setEnabled(const Uuid& id, bool value) {
    store_.change(id, [&](ScheduledTask& task) {
        task.isEnabled = value;
        if (value)
            task.nextRun = nextRun(task.schedule, dependencies_.clock(), dependencies_.calendar);
    });
    state_->publish();
}

void Scheduler::remove(const Uuid& id, bool byPerson) {
    const auto task = store_.task(id);
    if (byPerson && task && task->company && onRemovedByPerson_)
        onRemovedByPerson_(*task);
    store_.remove(id);
    state_->publish();
}

std::shared_ptr<void> Scheduler::observe(std::function<void()> observer) {
    auto token = state_->observers.add(std::move(observer));
    state_->watch();
    return token;
}

} // namespace vh::automation

#include "Core/ScheduleStore.h"

#include "Core/Codec.h"
#include "Platform/Folders.h"
#include "Platform/SystemError.h"

#include <algorithm>

namespace vh {

namespace {

using Tasks = std::vector<ScheduledTask>;

void upsertInto(Tasks& tasks, const ScheduledTask& task) {
    const auto found = std::ranges::find(tasks, task.id, &ScheduledTask::id);
    if (found == tasks.end())
        tasks.push_back(task);
    else
        *found = task;
}

bool removeFrom(Tasks& tasks, const Uuid& id) {
    return std::erase_if(tasks, [&](const ScheduledTask& task) { return task.id == id; }) > 0;
}

bool changeIn(Tasks& tasks, const Uuid& id, const std::function<void(ScheduledTask&)>& change) {
    const auto found = std::ranges::find(tasks, id, &ScheduledTask::id);
    if (found == tasks.end())
        return false;
    change(*found);
    return true;
}

} // namespace

ScheduleStore::ScheduleStore(std::string fileURL, LocalCalendar calendar)
    : calendar_(std::move(calendar)), file_(std::move(fileURL)) {}

std::string ScheduleStore::fileOfUser() {
    return Folders::ofUser().data + "/Varnholt/schedules.json";
}

/// Throws SystemError.
void ScheduleStore::catchUp() const {
    const auto text = file_.news();
    if (!text)
        return;
    tasks_.clear();
    file_.setDamaged(false);
    try {
        tasks_ = decodeJson<Tasks>(*text);
    } catch (const DecodeError&) {
        file_.setDamaged(true);
    }
    for (const auto& [id, task] : waiting_) {
        if (task)
            upsertInto(tasks_, *task);
        else
            removeFrom(tasks_, id);
    }
}

void ScheduleStore::catchUpIfReadable() const {
    try {
        catchUp();
    } catch (const SystemError&) {
        // What was read last still holds while the file cannot be read.
    }
}

Tasks ScheduleStore::tasks() const {
    const std::lock_guard guard(mutex_);
    catchUpIfReadable();
    return tasks_;
}

std::optional<ScheduledTask> ScheduleStore::task(const Uuid& id) const {
    const Tasks all = tasks();
    const auto found = std::ranges::find(all, id, &ScheduledTask::id);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

/// Notes what differs from what is in the file until it is written.
void ScheduleStore::replaceBy(Tasks changed) {
    for (const ScheduledTask& old : tasks_)
        if (std::ranges::find(changed, old.id, &ScheduledTask::id) == changed.end())
            waiting_[old.id] = std::nullopt;
    for (const ScheduledTask& task : changed)
        if (const auto old = std::ranges::find(tasks_, task.id, &ScheduledTask::id);
            old == tasks_.end() || *old != task)
            waiting_[task.id] = task;
    tasks_ = std::move(changed);
}

/// Change gets the list; what it returns is given back.
template <class Change>
auto ScheduleStore::changing(Change change) {
    std::unique_lock guard(mutex_);
    std::optional<FileLock> lock;
    trouble_.clear();
    try {
        lock.emplace(file_.lock());
        catchUp();
    } catch (const SystemError& error) {
        lock.reset(); // what cannot be read now must not be written over
        trouble_ = error.what();
    }
    Tasks changed = tasks_;
    auto result = change(changed);
    const bool isNews = changed != tasks_;
    replaceBy(std::move(changed));
    if (lock && !waiting_.empty())
        persist();
    lock.reset();
    guard.unlock();
    if (isNews)
        notify();
    return result;
}

void ScheduleStore::persist() {
    try {
        file_.write(encodeJson(tasks_, JsonStyle::pretty) + "\n");
        waiting_.clear();
    } catch (const SystemError& error) {
        trouble_ = error.what(); // it waits for the next change
    }
    catchUpIfReadable();
}

void ScheduleStore::upsert(const ScheduledTask& task) {
    changing([&](Tasks& tasks) {
        upsertInto(tasks, task);
        return true;
    });
}

bool ScheduleStore::change(const Uuid& id, const std::function<void(ScheduledTask&)>& change) {
    return changing([&](Tasks& tasks) { return changeIn(tasks, id, change); });
}

bool ScheduleStore::remove(const Uuid& id) {
    return changing([&](Tasks& tasks) { return removeFrom(tasks, id); });
}

Tasks ScheduleStore::due(Date at, std::chrono::seconds grace) const {
    Tasks due = tasks();
    std::erase_if(due, [&](const ScheduledTask& task) { return !isDue(task, at, grace); });
    return due;
}

Tasks ScheduleStore::skipMissed(Date at, std::chrono::seconds grace) {
    return changing([&](Tasks& tasks) {
        Tasks missed;
        for (ScheduledTask& task : tasks) {
            if (!isMissed(task, at, grace))
                continue;
            missed.push_back(task);
            task.nextRun = nextRun(task.schedule, at, calendar_);
        }
        return missed;
    });
}

void ScheduleStore::markRun(const Uuid& id, Date at, std::optional<Outcome> outcome) {
    change(id, [&](ScheduledTask& task) {
        if (outcome) {
            task.lastRun = at;
            task.lastOutcome = outcome;
        }
        task.nextRun = nextRun(task.schedule, at, calendar_);
    });
}

std::string ScheduleStore::trouble() const {
    const std::lock_guard guard(mutex_);
    return trouble_;
}

std::shared_ptr<void> ScheduleStore::observe(std::function<void()> observer) {
    const std::lock_guard guard(mutex_);
    return observers_.add(std::move(observer));
}

void ScheduleStore::notify() {
    Observers<> observers;
    {
        const std::lock_guard guard(mutex_);
        observers = observers_;
    }
    observers.tell();
}

} // namespace vh

#pragma once

#include "Core/Observers.h"
#include "Core/ScheduledTask.h"
#include "Core/SharedFile.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vh {

/// The scheduled tasks: one file that the window, the command line and the server share. Every call first takes in
/// what others wrote; every change reads, changes and writes under a lock between processes. A file that cannot be
/// read counts as empty and is kept as "<file>.damaged" when it is first written over; a write that fails leaves the
/// list in memory right and is tried again with the next change. Any thread may call.
class ScheduleStore {
public:
    /// The file and its folder are made by the first write.
    explicit ScheduleStore(std::string fileURL, LocalCalendar calendar = {});
    /// "<data>/Varnholt/schedules.json".
    static std::string fileOfUser();

    std::vector<ScheduledTask> tasks() const; ///< in the order of the file
    std::optional<ScheduledTask> task(const Uuid& id) const;

    /// Replaces by identifier or appends.
    void upsert(const ScheduledTask& task);
    /// Changes one task in place, under the lock; false when it is gone.
    bool change(const Uuid& id, const std::function<void(ScheduledTask&)>& change);
    /// False when there was none.
    bool remove(const Uuid& id);

    std::vector<ScheduledTask> due(Date at, std::chrono::seconds grace = missedGrace) const;
    /// Moves the missed ones on to their next run and gives them as they were.
    std::vector<ScheduledTask> skipMissed(Date at, std::chrono::seconds grace = missedGrace);
    /// With an outcome also notes run and outcome; in either case the next run is the first after `at`.
    void markRun(const Uuid& id, Date at, std::optional<Outcome> outcome);

    /// Called on the thread that changed the list, in this process, until the token goes.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> observer);

    /// Why the last change is in memory only, for people; empty when it is in the file.
    std::string trouble() const;

    const std::string& fileURL() const { return file_.path(); }

private:
    template <class Change>
    auto changing(Change change);
    void replaceBy(std::vector<ScheduledTask> changed);
    void catchUp() const;
    void catchUpIfReadable() const;
    void persist();
    void notify();

    const LocalCalendar calendar_;
    mutable std::mutex mutex_;
    mutable SharedFile file_;
    mutable std::vector<ScheduledTask> tasks_;
    /// What could not be written yet, over what the file says; nothing for a removed one.
    std::map<Uuid, std::optional<ScheduledTask>> waiting_;
    std::string trouble_;
    Observers<> observers_;
};

} // namespace vh

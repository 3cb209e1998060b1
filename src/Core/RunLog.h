#pragma once

#include "Core/Observers.h"
#include "Core/RunHandle.h"
#include "Core/RunLogFile.h"
#include "Core/RunRecord.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

class RunFiles;
class RunMatcher;
class UserDefaults;

/// Everything that was done to this machine: "runs.jsonl" in the database folder, appended to by several processes.
/// Every reader first takes in what others wrote, and follows the database when it moves. Any thread may call.
class RunLog {
public:
    static constexpr size_t defaultMaxRecords = 20000;
    /// The name of the notice that observers get.
    static constexpr std::string_view didChange = "com.varnholt.runlog.didChange";
    using Hook = std::function<void(const RunRecord&)>;

    /// Reads the log of DatabaseLocation::folder(defaults). A log that cannot be read is empty until it can.
    RunLog(UserDefaults& defaults, RunFiles& files, Clock clock = systemNow,
           size_t maxRecords = defaultMaxRecords);

    std::shared_ptr<RunHandle> begin(std::string toolID, Trigger trigger, RunDetails details = {});
    /// What is done as a part of another run, which stands for it in the log: its record goes to its caller alone.
    std::shared_ptr<RunHandle> beginPart(std::string toolID, Trigger trigger, RunDetails details = {});

    Date now() const { return clock_(); }

    /// Whether the record is in the file. One that waits in memory is written with the next.
    enum class Stored { inFile, inMemory };
    /// Appends; then observers and the hook are called on this thread, outside the log's lock.
    Stored record(const RunRecord& record);

    /// The one callback that gets each record of this process; it may read the log and must not throw. Calls of the one
    /// before have ended by the return, so it must not be set from within a call.
    void setOnRecord(Hook hook);

    /// Called on the thread that changed the log, until the returned token goes.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> observer);
    /// Takes in what other processes wrote and tells observers if that was anything since the last notice.
    void refresh();

    std::vector<RunRecord> all() const;            ///< oldest first
    std::vector<RunRecord> recent(size_t n) const; ///< newest first
    /// The newest that the filter takes, at most so many, newest first.
    std::vector<RunRecord> search(const RunMatcher& filter, size_t most) const;
    std::vector<RunRecord> since(Date date) const; ///< begun at `date` or later, oldest first
    std::optional<RunRecord> last(std::string_view toolID) const;
    double total(RunMetric metric, Date since) const;
    /// Nothing when there is no such record.
    std::optional<Stored> find(const Uuid& id) const;

    /// True when a move to `folder` would take the place of another log.
    bool wouldReplace(const std::string& folder) const;

    std::string location() const; ///< the file
    int64_t bytes() const;

    /// Moves the log and the file lists to another folder, an absolute path, for every process. A kill at any moment
    /// leaves either place whole and in use. Throws SystemError and leaves all as it was.
    void relocate(const std::string& folder);
    /// Forgets records begun before `before`, and file lists without a record or written before `filesBefore`.
    void prune(std::optional<Date> before, std::optional<Date> filesBefore);
    void clearAll();  ///< records and file lists
    void removeAll(); ///< records

    /// This computer's name for people, "Mac" when it has none.
    static const std::string& thisComputer();

private:
    struct Waiting { // kept in memory because it could not be stored
        RunRecord record;
        std::string line; // empty when it has no JSON form
    };

    void catchUp() const;
    void follow(const std::string& folder) const;
    void persist();
    void storeFolder(const std::string& folder);
    void trim();
    void notify();
    template <class Visit>
    void forEachNewestFirst(Visit visit) const;

    UserDefaults& defaults_;
    RunFiles& files_;
    Clock clock_;
    size_t maxRecords_;
    mutable std::mutex mutex_;
    mutable RunLogFile file_;
    std::vector<Waiting> waiting_;
    mutable uint64_t changes_ = 0;
    uint64_t announced_ = 0;
    std::shared_mutex hookMutex_; ///< of hook_, shared while it is called
    Hook hook_;
    Observers<> observers_;
};

} // namespace vh

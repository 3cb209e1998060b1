#pragma once

#include "Automation/AutomationDependencies.h"
#include "Core/JobControl.h"
#include "Core/RunRecord.h"
#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/SyncPlan.h"
#include "Tools/FolderSync/WatchState.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh::automation {

/// How a sync of one pair ended.
struct SyncJobResult {
    enum class End {
        done,     ///< the plan was carried out, with or without errors, or stopped
        upToDate, ///< nothing to do
        blocked,  ///< a folder is not there or not permitted: see `state`
        held,     ///< nobody looked at it and it would remove too much: see `state`
        failed,   ///< the folders could not be compared
        busy      ///< another sync runs, in this or another process
    };
    End end = End::failed;
    std::optional<sync::WatchState> state;
    sync::SyncResult result;
    std::string message;             ///< for people
    std::optional<RunRecord> record; ///< nothing where nothing was logged
    std::string trackingFailure;     ///< why the list of what was done could not be kept; else empty
};

/// How far a plan is carried out.
struct SyncJobProgress {
    int64_t done = 0, total = 0;       ///< actions
    int64_t bytes = 0, bytesTotal = 0; ///< copied, and to copy
    std::string_view current;          ///< the relative path of what was done last

    /// 0 to 1, of files and bytes together.
    double fraction() const;
};

/// Who asks for a sync.
struct SyncJobRequest {
    sync::SyncPair pair;
    std::optional<sync::SyncPlan> plan; ///< that a person has seen; else it is made here
    Trigger trigger = Trigger::manual;
    RunDetails details;
    bool isAttended = true; ///< a person has approved: no guard
    /// A scheduled run waits for its turn, and always leaves a record: also that it was up to date or why it could not be.
    bool logsNothingToDo = false;
    /// Throttled, on the thread of the run, beside that of its JobControl. May be empty.
    std::function<void(const SyncJobProgress&)> progress = {};
};

/// The one road from a pair to a synced destination and its run record with its file list: checks, plans, holds back
/// what nobody approved, carries it out, notes when. One at a time among all processes of this user. Never throws; asked
/// to stop, also before the first change, it is done and its result stopped. Blocks; any thread.
SyncJobResult runSync(SyncJobRequest request, const AutomationDependencies& dependencies,
                      const JobControl& control);

/// The pair that a schedule's payload means: "pair" of the stored ones, else "source", "destination" and "delete".
std::optional<sync::SyncPair> pairOfPayload(const std::map<std::string, std::string>& payload,
                                            const std::vector<sync::SyncPair>& stored);

} // namespace vh::automation

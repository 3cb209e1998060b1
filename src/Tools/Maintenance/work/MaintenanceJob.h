#pragma once

#include "Core/JobControl.h"
#include "Core/RunRecord.h"
#include "HelperKit/MaintenanceWork.h"

#include <string>

namespace vh {
class RunLog;
class Texts;
} // namespace vh

namespace vh::automation {

/// One task as it was run, and what its commands printed.
struct MaintenanceJobResult {
    RunRecord record; ///< of tool "maintenance"; its summary says what came of it
    std::string output;
};

/// The one road from a task to its run record. Never throws; a task that cannot run here fails and says why. Blocks;
/// any thread.
MaintenanceJobResult runMaintenance(MaintenanceTask task, const helper::MaintenanceWork& work, RunLog& log,
                                    Trigger trigger, const Texts& texts, const JobControl& control = {});

} // namespace vh::automation

#pragma once

#include "Automation/ScheduledActions.h"

namespace vh::copy {

/// Does automation::copyAction: metadata and links go along. The record's output names what landed, a path a line. Never
/// throws. Blocks; any thread.
RunRecord runCopyAction(const automation::AutomationDependencies& dependencies,
                        const automation::ActionRequest& request, const JobControl& control);

} // namespace vh::copy

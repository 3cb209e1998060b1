#pragma once

#include "Automation/AutomationDependencies.h"

namespace vh::app {

class Session;

/// What automation needs, out of a session that outlives it. Opens the run log. Main thread.
automation::AutomationDependencies automationDependencies(Session& session, MainLoop& loop,
                                                          Clock clock = systemNow,
                                                          const LocalCalendar& calendar = {});

} // namespace vh::app

#pragma once

#include "Core/Date.h"
#include "Core/LocalCalendar.h"

#include <memory>

namespace vh {
struct RunStores;
}

namespace vh::automation {
class Automation;
}

namespace vh::app {

class ActivityCenter;
class AppTexts;
class Appearance;
class DatabaseCare;
class QtLoop;
class RunLogWatch;
class Session;

/// What the view-models share, made once for a window; it outlives them. Main thread.
class AppContext {
public:
    explicit AppContext(Session& session, Clock clock = systemNow, LocalCalendar calendar = {});
    ~AppContext();
    AppContext(const AppContext&) = delete;
    AppContext& operator=(const AppContext&) = delete;

    Session& session() { return session_; }
    AppTexts& texts() { return *texts_; }
    Appearance& appearance() { return *appearance_; }
    ActivityCenter& activity() { return *activity_; }
    /// Both open the run log when first asked for.
    RunLogWatch& runs();
    /// At work from then on, and by itself soon after the start.
    DatabaseCare& databaseCare();
    RunStores runStores();
    /// Schedules, flows and what starts them, on the window's main loop; made when first asked for.
    automation::Automation& automation();

    const Clock& clock() const { return clock_; }
    Date now() const { return clock_(); }
    const LocalCalendar& calendar() const { return calendar_; }

private:
    Session& session_;
    const Clock clock_;
    const LocalCalendar calendar_;
    std::unique_ptr<AppTexts> texts_;
    std::unique_ptr<Appearance> appearance_;
    std::unique_ptr<ActivityCenter> activity_;
    std::unique_ptr<RunLogWatch> runs_;
    std::unique_ptr<DatabaseCare> databaseCare_;
    std::unique_ptr<QtLoop> loop_;
    std::unique_ptr<automation::Automation> automation_;
};

} // namespace vh::app

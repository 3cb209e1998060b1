#include "app/AppContext.h"

#include "Automation/Automation.h"
#include "Core/CleanJob.h"
#include "app/ActivityCenter.h"
#include "app/AppTexts.h"
#include "app/Appearance.h"
#include "app/DatabaseCare.h"
#include "app/QtLoop.h"
#include "app/RunLogWatch.h"
#include "app/Session.h"
#include "app/SessionAutomation.h"

#include <QTimer>

namespace vh::app {

namespace {

/// Long enough for the first frame to be there.
constexpr std::chrono::seconds upkeepDelay{3};

} // namespace

AppContext::AppContext(Session& session, Clock clock, LocalCalendar calendar)
    : session_(session), clock_(std::move(clock)), calendar_(std::move(calendar)),
      texts_(std::make_unique<AppTexts>(session)),
      appearance_(std::make_unique<Appearance>(session.defaults())),
      activity_(std::make_unique<ActivityCenter>(clock_)) {
    QTimer::singleShot(upkeepDelay, texts_.get(), [this] { databaseCare(); });
}

AppContext::~AppContext() = default;

RunLogWatch& AppContext::runs() {
    if (!runs_)
        runs_ = std::make_unique<RunLogWatch>(session_.runLog());
    return *runs_;
}

DatabaseCare& AppContext::databaseCare() {
    if (!databaseCare_) {
        databaseCare_ = std::make_unique<DatabaseCare>(session_.defaults(), session_.runLog(),
                                                       session_.runFiles(), clock_);
        databaseCare_->start();
    }
    return *databaseCare_;
}

RunStores AppContext::runStores() {
    return session_.runStores();
}

automation::Automation& AppContext::automation() {
    if (!automation_) {
        loop_ = std::make_unique<QtLoop>();
        automation_ = std::make_unique<automation::Automation>(
            automationDependencies(session_, *loop_, clock_, calendar_));
    }
    return *automation_;
}

} // namespace vh::app

#include "app/SessionAutomation.h"

#include "Automation/Offer.h"
#include "Core/RunJournal.h"
#include "Core/SuiteModule.h"
#include "app/ModuleRegistry.h"
#include "app/Session.h"

namespace vh::app {

automation::AutomationDependencies automationDependencies(Session& session, MainLoop& loop, Clock clock,
                                                          const LocalCalendar& calendar) {
    const ModuleRegistry& registry = session.registry();
    return {loop,
            session.folders(),
            session.defaults(),
            session.runStores(),
            [&session] { return Texts(session.language()); },
            [&registry](std::string_view id) { return registry.makeModule(id); },
            [&session] { return helper::MaintenanceWork(&session.helper()); },
            automation::offers(),
            std::move(clock),
            calendar};
}

} // namespace vh::app

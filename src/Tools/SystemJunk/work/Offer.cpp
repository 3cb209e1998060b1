#include "Automation/ActionRun.h"
#include "Tools/SystemJunk/SystemJunkModule.h"

namespace vh::features {

namespace {

std::shared_ptr<SuiteModule> makeModule(const Folders& folders, const std::string& databaseFolder) {
    return std::make_shared<junk::SystemJunkModule>(
        junk::SystemJunkConfiguration::userDefaults(folders, databaseFolder));
}

constexpr automation::ActionRow actions[]{{.id = rawValue(ScheduledAction::cleanStorage),
                                           .run = automation::cleanWithModule,
                                           .isThere = automation::hasModule<ScheduledAction::cleanStorage>}};

} // namespace

extern const automation::Offer SystemJunk;
constinit const automation::Offer SystemJunk{.tool = "system-junk", .module = makeModule, .actions = actions};

} // namespace vh::features

#include "Automation/Offer.h"

#include "Automation/Automation.h"
#include "Tools/FastCopy/work/CopyAction.h"

namespace vh::features {

namespace {

void provideCopies(automation::Automation& automation) {
    automation.actions().provide(automation::copyAction,
                                 [&dependencies = automation.dependencies()](
                                     const automation::ActionRequest& request, const JobControl& control) {
                                     return copy::runCopyAction(dependencies, request, control);
                                 });
}

} // namespace

extern const automation::Offer FastCopy;
constinit const automation::Offer FastCopy{.tool = "fast-copy", .service = provideCopies};

} // namespace vh::features

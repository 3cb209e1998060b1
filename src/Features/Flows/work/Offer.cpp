#include "Automation/Offer.h"
#include "Automation/Automation.h"
#include "Features/Flows/work/FlowsService.h"

namespace vh::features {

extern const automation::Offer Flows;
constinit const automation::Offer Flows{.service = [](automation::Automation& automation) {
    automation.service<automation::FlowsService>();
}};

} // namespace vh::features

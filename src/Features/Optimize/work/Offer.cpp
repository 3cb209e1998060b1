#include "Automation/Offer.h"
#include "Automation/Automation.h"
#include "Features/Optimize/work/OptimizeService.h"

namespace vh::features {

extern const automation::Offer Optimize;
constinit const automation::Offer Optimize{.service = [](automation::Automation& automation) {
    automation.service<automation::OptimizeService>();
}};

} // namespace vh::features

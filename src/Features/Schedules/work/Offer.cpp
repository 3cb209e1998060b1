#include "Automation/Offer.h"
#include "Automation/Automation.h"
#include "Features/Schedules/work/SchedulesService.h"

namespace vh::features {

extern const automation::Offer Schedules;
constinit const automation::Offer Schedules{.service = [](automation::Automation& automation) {
    automation.service<automation::SchedulesService>();
}};

} // namespace vh::features

#include "Automation/Offer.h"
#include "Automation/Automation.h"
#include "Features/FollowUps/work/FollowUpsService.h"

namespace vh::automation {

FollowUpsService::FollowUpsService(Automation& automation)
    : followUps_(automation.dependencies(), automation.mail()) {}

} // namespace vh::automation

namespace vh::features {

extern const automation::Offer FollowUps;
constinit const automation::Offer FollowUps{.service = [](automation::Automation& automation) {
    automation.service<automation::FollowUpsService>();
}};

} // namespace vh::features

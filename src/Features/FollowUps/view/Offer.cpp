#include "Features/FollowUps/view/FollowUpsViewModel.h"
#include "Features/FollowUps/view/MailViewModel.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

constexpr app::ModelRow models[]{{"mail", app::makeModel<app::MailViewModel>},
                                 {"followUps", app::makeModel<app::FollowUpsViewModel>}};
constexpr app::PartRow parts[]{
    {"settings", "MailCard"}, {"settings", "FollowUpsCard"}, {"scan", "FollowUpButton"}};

} // namespace

extern const app::ViewOffer FollowUpsView;
constinit const app::ViewOffer FollowUpsView{.models = models, .parts = parts};

} // namespace vh::features

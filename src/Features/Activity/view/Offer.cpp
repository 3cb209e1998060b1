#include "Features/Activity/view/ActivityViewModel.h"
#include "app/AppContext.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

std::unique_ptr<QObject> makeActivity(const app::ViewParts& parts) {
    return std::make_unique<app::ActivityViewModel>(parts.context);
}

constexpr app::PageRow pages[]{{"activity", "ActivityPage"}};
constexpr app::ModelRow models[]{{"activity", makeActivity}};

} // namespace

extern const app::ViewOffer ActivityView;
constinit const app::ViewOffer ActivityView{.pages = pages, .models = models};

} // namespace vh::features

#include "Features/Home/view/HomeViewModel.h"
#include "app/AppContext.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

std::unique_ptr<QObject> makeHome(const app::ViewParts& parts) {
    return std::make_unique<app::HomeViewModel>(parts.context);
}

constexpr app::PageRow pages[]{{"home", "HomePage"}};
constexpr app::ModelRow models[]{{"home", makeHome}};

} // namespace

extern const app::ViewOffer HomeView;
constinit const app::ViewOffer HomeView{.pages = pages, .models = models};

} // namespace vh::features

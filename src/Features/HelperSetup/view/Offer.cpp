#include "Features/HelperSetup/view/HelperViewModel.h"
#include "HelperKit/HelperClient.h"
#include "app/AppContext.h"
#include "app/Session.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

std::unique_ptr<QObject> makeHelper(const app::ViewParts& parts) {
    return std::make_unique<app::HelperViewModel>(parts.context, parts.context.session().helper());
}

constexpr app::PageRow pages[]{{"helper", "HelperSetupPage"}};
constexpr app::ModelRow models[]{{"helper", makeHelper}};
constexpr app::PartRow parts[]{{"settings", "HelperCard"}};

} // namespace

extern const app::ViewOffer HelperSetupView;
constinit const app::ViewOffer HelperSetupView{.pages = pages, .models = models, .parts = parts};

} // namespace vh::features

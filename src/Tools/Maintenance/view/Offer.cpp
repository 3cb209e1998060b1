#include "HelperKit/HelperClient.h"
#include "HelperKit/MaintenanceWork.h"
#include "Tools/Maintenance/view/MaintenanceViewModel.h"
#include "app/AppContext.h"
#include "app/Session.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

std::unique_ptr<QObject> makeMaintenance(const app::ViewParts& parts) {
    return std::make_unique<app::MaintenanceViewModel>(
        parts.context, helper::MaintenanceWork(&parts.context.session().helper()));
}

constexpr app::PageRow pages[]{{"maintenance", "MaintenancePage"}};
constexpr app::ModelRow models[]{{"maintenance", makeMaintenance}};

} // namespace

extern const app::ViewOffer MaintenanceView;
constinit const app::ViewOffer MaintenanceView{.pages = pages, .models = models};

} // namespace vh::features

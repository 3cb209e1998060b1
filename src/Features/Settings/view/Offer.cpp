#include "Features/Settings/view/SettingsViewModel.h"
#include "app/AppContext.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

std::unique_ptr<QObject> makeSettings(const app::ViewParts& parts) {
    return std::make_unique<app::SettingsViewModel>(parts.context);
}

constexpr app::PageRow pages[]{{"settings", "SettingsPage"}};
constexpr app::ModelRow models[]{{"settings", makeSettings}};

} // namespace

extern const app::ViewOffer SettingsView;
constinit const app::ViewOffer SettingsView{.pages = pages, .models = models};

} // namespace vh::features

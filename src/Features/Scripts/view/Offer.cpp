#include "Features/Scripts/view/ScriptsViewModel.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

constexpr app::PageRow pages[]{{"scripts", "ScriptsPage"}};
constexpr app::ModelRow models[]{{"scripts", app::makeModel<app::ScriptsViewModel>}};

} // namespace

extern const app::ViewOffer ScriptsView;
constinit const app::ViewOffer ScriptsView{.pages = pages, .models = models};

} // namespace vh::features

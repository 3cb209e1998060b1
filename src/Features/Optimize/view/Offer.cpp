#include "Features/Optimize/view/OptimizeViewModel.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

constexpr app::ModelRow models[]{{"optimize", app::makeModel<app::OptimizeViewModel>}};
constexpr app::PartRow parts[]{{"home", "OptimizeCard"}};

} // namespace

extern const app::ViewOffer OptimizeView;
constinit const app::ViewOffer OptimizeView{.models = models, .parts = parts};

} // namespace vh::features

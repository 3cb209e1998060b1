#include "Features/Optimize/view/OptimizeViewModel.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

constexpr app::ModelRow models[]{{"optimize", app::makeModel<app::OptimizeViewModel>}};

} // namespace

extern const app::ViewOffer OptimizeView;
constinit const app::ViewOffer OptimizeView{.models = models};

} // namespace vh::features

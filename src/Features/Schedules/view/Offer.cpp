#include "Features/Schedules/view/SchedulesViewModel.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

constexpr app::PageRow pages[]{{"schedules", "SchedulesPage", "scheduler"}};
constexpr app::ModelRow models[]{{"schedules", app::makeModel<app::SchedulesViewModel>}};

} // namespace

extern const app::ViewOffer SchedulesView;
constinit const app::ViewOffer SchedulesView{.pages = pages, .models = models};

} // namespace vh::features

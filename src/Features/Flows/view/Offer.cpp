#include "Automation/Automation.h"
#include "Features/Flows/view/FlowEditorViewModel.h"
#include "Features/Flows/view/FlowListViewModel.h"
#include "app/AppContext.h"
#include "app/AutomationLife.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

std::unique_ptr<QObject> makeFlowList(const app::ViewParts& parts) {
    return std::make_unique<app::FlowListViewModel>(parts.context, parts.life.automation());
}

std::unique_ptr<QObject> makeFlowEditor(const app::ViewParts& parts) {
    return std::make_unique<app::FlowEditorViewModel>(parts.context, parts.life.automation());
}

constexpr app::PageRow pages[]{{"nodos", "NodosPage", "nodes"}};
constexpr app::ModelRow models[]{{"flows", makeFlowList}, {"flowEditor", makeFlowEditor}};

} // namespace

extern const app::ViewOffer FlowsView;
constinit const app::ViewOffer FlowsView{.pages = pages, .models = models};

} // namespace vh::features

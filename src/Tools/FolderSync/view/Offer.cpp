#include "Automation/Automation.h"
#include "Tools/FolderSync/view/FolderSyncViewModel.h"
#include "Tools/FolderSync/work/SyncService.h"
#include "app/AppContext.h"
#include "app/AutomationLife.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

std::unique_ptr<QObject> makeFolderSync(const app::ViewParts& parts) {
    return std::make_unique<app::FolderSyncViewModel>(
        parts.context, parts.life.automation().service<automation::SyncService>().runner());
}

constexpr app::PageRow pages[]{{"sync", "SyncPage"}};
constexpr app::ModelRow models[]{{"folderSync", makeFolderSync}};

} // namespace

extern const app::ViewOffer FolderSyncView;
constinit const app::ViewOffer FolderSyncView{.pages = pages, .models = models};

} // namespace vh::features

#include "Tools/FastCopy/view/FastCopyViewModel.h"
#include "app/AppContext.h"
#include "app/ViewOffer.h"

namespace vh::features {

namespace {

std::unique_ptr<QObject> makeFastCopy(const app::ViewParts& parts) {
    return std::make_unique<app::FastCopyViewModel>(parts.context, parts.life,
                                                    app::CopyDependencies::of(parts.context));
}

constexpr app::PageRow pages[]{{"fast-copy", "CopyPage"}};
constexpr app::ModelRow models[]{{"fastCopy", makeFastCopy}};

} // namespace

extern const app::ViewOffer FastCopyView;
constinit const app::ViewOffer FastCopyView{.pages = pages, .models = models};

} // namespace vh::features

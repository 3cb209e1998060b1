#include "app/ViewOffer.h"

namespace vh::features {

namespace {

constexpr app::PageRow pages[]{{"system-junk", "CachePage"}};

} // namespace

extern const app::ViewOffer SystemJunkView;
constinit const app::ViewOffer SystemJunkView{.pages = pages};

} // namespace vh::features

#include "Automation/Offer.h"

namespace vh::features {

extern const automation::Offer FastCopy;
constinit const automation::Offer FastCopy{.tool = "fast-copy"};

} // namespace vh::features

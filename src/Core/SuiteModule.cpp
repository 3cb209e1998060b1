#include "Core/SuiteModule.h"

namespace vh {

ScanReport SuiteModule::scan(const JobControl&) {
    return {std::string(id()), {}, systemNow()};
}

CleanResult SuiteModule::clean(const CleanSelection&, const JobControl&) {
    return {};
}

} // namespace vh

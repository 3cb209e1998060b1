#include "Platform/ServiceInstallation.h"

#include <stdexcept>

namespace vh {

namespace {

[[noreturn]] void refuse() {
    throw std::runtime_error("On macOS the application registers its helper: varnholt helper register");
}

} // namespace

void installService(const ServiceInstallation&, const std::string&) {
    refuse();
}

void uninstallService(const ServiceInstallation&, const std::string&) {
    refuse();
}

} // namespace vh

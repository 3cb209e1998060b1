#include "HelperKit/HelperClient.h"
#include "HelperKit/HelperProtocol.h"

namespace vh::helper {

std::unique_ptr<HelperClient> openHelperClient(UserDefaults& defaults, const std::string& build) {
    return std::make_unique<HelperClient>(HelperClient::Dependencies{
        .openLink = [] { return openServiceLink(helperIdentity()); },
        .registration =
            openServiceRegistration(std::string(identity::program), std::string(identity::machServiceName)),
        .defaults = defaults,
        .build = build});
}

} // namespace vh::helper

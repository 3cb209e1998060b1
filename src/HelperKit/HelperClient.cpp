#include "HelperKit/HelperClient.h"

namespace vh::helper {

struct HelperClient::State {
    World world;
};

HelperClient::HelperClient(World world) : state_(std::make_unique<State>(State{std::move(world)})) {}
HelperClient::~HelperClient() = default;

HelperRegistrationStatus HelperClient::status() const {
    return HelperRegistrationStatus::notFound;
}

std::unique_ptr<HelperClient> openHelperClient(UserDefaults& defaults, const std::string& build) {
    return std::make_unique<HelperClient>(HelperClient::World{{}, {}, defaults, build, {}, {}});
}

} // namespace vh::helper

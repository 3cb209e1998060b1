#include "Platform/SecretStore.h"

#include "Platform/Linux/SecretsModule.h"
#include "Platform/Module.h"

#include <stdexcept>

namespace vh {

std::unique_ptr<SecretStore> openSystemSecrets() {
    try {
        return static_cast<SecretsModule*>(openModule("secrets"))->open();
    } catch (const std::runtime_error&) {
        return nullptr;
    }
}

} // namespace vh

#pragma once

#include "Platform/SecretStore.h"

namespace vh {

/// What the entry of the module "secrets" gives.
struct SecretsModule {
    /// Nothing when no service can be used.
    std::unique_ptr<SecretStore> (*open)();
};

} // namespace vh

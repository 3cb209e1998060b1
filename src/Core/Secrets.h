#pragma once

#include "Platform/SecretStore.h"

namespace vh {

/// The system's store; where there is none, and for what was stored while there was none, the file `fallback` of mode
/// 0600. Asks the system at first use. Any thread.
std::unique_ptr<SecretStore> openSecretStore(const std::string& fallback);

} // namespace vh

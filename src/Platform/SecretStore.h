#pragma once

#include <memory>
#include <optional>
#include <string>

namespace vh {

/// Passwords and keys, by a dotted name such as "mail.password". Any thread; calls may wait for the person to unlock
/// the store, for a minute at most. All throw std::runtime_error that says why the store refused.
class SecretStore {
public:
    virtual ~SecretStore() = default;
    virtual std::optional<std::string> get(const std::string& name) = 0;
    /// `title` is what the system's own list of secrets shows.
    virtual void set(const std::string& name, const std::string& title, const std::string& secret) = 0;
    virtual void remove(const std::string& name) = 0;
};

/// The system's store; nothing where none answers, or where it is locked and no desktop is there to unlock it.
/// Core/Secrets.h has the one that always works.
std::unique_ptr<SecretStore> openSystemSecrets();

} // namespace vh

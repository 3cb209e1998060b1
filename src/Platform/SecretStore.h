#pragma once

#include <memory>
#include <optional>
#include <string>

namespace vh {

/// Passwords and keys, by a dotted name such as "mail.password". Any thread; calls may wait for the person to unlock
/// the store. All throw std::runtime_error that says why the store refused.
class SecretStore {
public:
    virtual ~SecretStore() = default;
    virtual std::optional<std::string> get(const std::string& name) = 0;
    /// `title` is what the system's own list of secrets shows.
    virtual void set(const std::string& name, const std::string& title, const std::string& secret) = 0;
    virtual void remove(const std::string& name) = 0;
};

/// The system's store; where none answers, the file `fallback` of mode 0600.
std::unique_ptr<SecretStore> openSecretStore(const std::string& fallback);

} // namespace vh

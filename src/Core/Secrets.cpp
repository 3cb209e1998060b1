#include "Core/Secrets.h"

#include "Core/UserDefaults.h"

#include <mutex>

namespace vh {

namespace {

class Secrets : public SecretStore {
public:
    explicit Secrets(const std::string& file) : file_(file) {}

    std::optional<std::string> get(const std::string& name) override {
        if (SecretStore* const store = system())
            if (auto secret = store->get(name))
                return secret;
        return file_.get<std::string>(name);
    }

    void set(const std::string& name, const std::string& title, const std::string& secret) override {
        SecretStore* const store = system();
        if (store == nullptr)
            return file_.set(name, secret);
        store->set(name, title, secret);
        removeFromFile(name);
    }

    void remove(const std::string& name) override {
        if (SecretStore* const store = system())
            store->remove(name);
        removeFromFile(name);
    }

private:
    SecretStore* system() {
        std::call_once(asked_, [this] { system_ = openSystemSecrets(); });
        return system_.get();
    }

    void removeFromFile(const std::string& name) {
        if (file_.get<std::string>(name))
            file_.remove(name);
    }

    /// Settings are such a file: mode 0600, written whole, safe with several processes.
    UserDefaults file_;
    std::once_flag asked_;
    std::unique_ptr<SecretStore> system_;
};

} // namespace

std::unique_ptr<SecretStore> openSecretStore(const std::string& fallback) {
    return std::make_unique<Secrets>(fallback);
}

} // namespace vh

#include "Platform/Linux/SecretsModule.h"

#include <condition_variable>
#include <cstdlib>
#include <libsecret/secret.h>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace vh {

namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr int askMilliseconds = 3000;
/// For a person to type a password; without an answer the call fails.
constexpr std::chrono::seconds unlockLimit{60};

const SecretSchema schema{
    "org.varnholt.Secret",
    SECRET_SCHEMA_NONE,
    {{"name", SECRET_SCHEMA_ATTRIBUTE_STRING}, {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
    0,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr};

template <class T>
struct Unref {
    void operator()(T* object) const { g_object_unref(object); }
};
template <class T>
using Object = std::unique_ptr<T, Unref<T>>;

struct VariantUnref {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, VariantUnref>;

/// Cancels what runs under it once the limit is over.
class TimeLimit {
public:
    TimeLimit() : thread_([this] { wait(); }) {}
    ~TimeLimit() {
        {
            const std::lock_guard guard(mutex_);
            isOver_ = true;
        }
        over_.notify_all();
        thread_.join();
    }
    GCancellable* token() const { return token_.get(); }

private:
    void wait() {
        std::unique_lock lock(mutex_);
        if (!over_.wait_for(lock, unlockLimit, [this] { return isOver_; }))
            g_cancellable_cancel(token_.get());
    }

    Object<GCancellable> token_{g_cancellable_new()};
    std::mutex mutex_;
    std::condition_variable over_;
    bool isOver_ = false;
    std::thread thread_;
};

void throwIf(GError* error) {
    if (error == nullptr)
        return;
    const bool isTimeOver = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
    const std::string reason = isTimeOver ? "the secret store was not unlocked" : error->message;
    g_error_free(error);
    throw std::runtime_error(reason);
}

/// The answer's single value of `type`; nothing when the call failed.
Variant ask(GDBusConnection* bus, const char* name, const char* path, const char* interface,
            const char* member, GVariant* arguments, const char* type) {
    return Variant(g_dbus_connection_call_sync(bus, name, path, interface, member, arguments,
                                               G_VARIANT_TYPE(type), G_DBUS_CALL_FLAGS_NONE, askMilliseconds,
                                               nullptr, nullptr));
}

bool mayStart(GDBusConnection* bus) {
    constexpr const char* dbus = "org.freedesktop.DBus";
    constexpr const char* dbusPath = "/org/freedesktop/DBus";
    gboolean isThere = FALSE;
    if (const Variant owner =
            ask(bus, dbus, dbusPath, dbus, "NameHasOwner", g_variant_new("(s)", serviceName), "(b)"))
        g_variant_get(owner.get(), "(b)", &isThere);
    if (isThere)
        return true;
    const Variant names = ask(bus, dbus, dbusPath, dbus, "ListActivatableNames", nullptr, "(as)");
    if (!names)
        return false;
    const Variant list(g_variant_get_child_value(names.get(), 0));
    for (size_t i = 0; i < g_variant_n_children(list.get()); ++i) {
        const Variant each(g_variant_get_child_value(list.get(), i));
        if (g_str_equal(g_variant_get_string(each.get(), nullptr), serviceName))
            return true;
    }
    return false;
}

/// Whether the collection that new secrets go to is open already.
bool isUnlocked(GDBusConnection* bus) {
    const Variant alias = ask(bus, serviceName, servicePath, "org.freedesktop.Secret.Service", "ReadAlias",
                              g_variant_new("(s)", "default"), "(o)");
    if (!alias)
        return false;
    const char* path = nullptr;
    g_variant_get(alias.get(), "(&o)", &path);
    const Variant locked = ask(bus, serviceName, path, "org.freedesktop.DBus.Properties", "Get",
                               g_variant_new("(ss)", "org.freedesktop.Secret.Collection", "Locked"), "(v)");
    if (!locked)
        return false;
    const Variant inner(g_variant_get_child_value(locked.get(), 0));
    const Variant value(g_variant_get_variant(inner.get()));
    return g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) &&
           g_variant_get_boolean(value.get()) == FALSE;
}

bool hasDesktop() {
    return std::getenv("WAYLAND_DISPLAY") != nullptr || std::getenv("DISPLAY") != nullptr;
}

class SecretService : public SecretStore {
public:
    explicit SecretService(Object<GDBusConnection> bus) : bus_(std::move(bus)) {}

    std::optional<std::string> get(const std::string& name) override {
        const TimeLimit limit;
        GError* error = nullptr;
        char* const found =
            secret_password_lookup_sync(&schema, limit.token(), &error, "name", name.c_str(), nullptr);
        throwIf(error);
        if (found == nullptr)
            return std::nullopt;
        std::string secret(found);
        secret_password_free(found);
        return secret;
    }

    void set(const std::string& name, const std::string& title, const std::string& secret) override {
        const TimeLimit limit;
        GError* error = nullptr;
        secret_password_store_sync(&schema, SECRET_COLLECTION_DEFAULT, title.c_str(), secret.c_str(),
                                   limit.token(), &error, "name", name.c_str(), nullptr);
        throwIf(error);
    }

    void remove(const std::string& name) override {
        const TimeLimit limit;
        GError* error = nullptr;
        secret_password_clear_sync(&schema, limit.token(), &error, "name", name.c_str(), nullptr);
        throwIf(error);
    }

private:
    /// The one that libsecret shares with us. By its own habit the program would end with it; kept, so that it does not.
    Object<GDBusConnection> bus_;
};

std::unique_ptr<SecretStore> openService() {
    Object<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (bus)
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    if (!bus || !mayStart(bus.get()) || !(isUnlocked(bus.get()) || hasDesktop()))
        return nullptr;
    return std::make_unique<SecretService>(std::move(bus));
}

} // namespace

} // namespace vh

extern "C" void* vhModule() {
    static vh::SecretsModule module{vh::openService};
    return &module;
}

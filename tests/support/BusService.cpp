#include "support/BusService.h"

#include <cstring>
#include <memory>
#include <stdexcept>
#include <systemd/sd-bus.h>

namespace vh::test {

namespace {

constexpr uint64_t turnMicroseconds = 10'000;

void check(int result, const std::string& what) {
    if (result < 0)
        throw std::runtime_error(what + ": " + std::strerror(-result));
}

void append(sd_bus_message* message, const BusService::Value& value) {
    if (const auto* truth = std::get_if<bool>(&value))
        sd_bus_message_append(message, "b", int(*truth));
    else if (const auto* small = std::get_if<uint32_t>(&value))
        sd_bus_message_append(message, "u", *small);
    else if (const auto* large = std::get_if<uint64_t>(&value))
        sd_bus_message_append(message, "t", *large);
    else if (const auto* verdict = std::get_if<BusService::Verdict>(&value))
        sd_bus_message_append(message, "(bba{ss})", int(verdict->isAuthorized), 0, 0);
    else {
        sd_bus_message_open_container(message, 'a', "s");
        for (const std::string& each : std::get<std::vector<std::string>>(value))
            sd_bus_message_append(message, "s", each.c_str());
        sd_bus_message_close_container(message);
    }
}

void appendVariant(sd_bus_message* message, const BusService::Value& value) {
    static constexpr const char* types[]{"b", "u", "t", "as", "(bba{ss})"};
    sd_bus_message_open_container(message, 'v', types[value.index()]);
    append(message, value);
    sd_bus_message_close_container(message);
}

void collectTexts(sd_bus_message* message, std::vector<std::string>& texts) {
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(message, &type, &contents) > 0) {
        const char* text = nullptr;
        if (type == 's' && sd_bus_message_read_basic(message, 's', &text) >= 0)
            texts.emplace_back(text);
        else if (contents == nullptr)
            sd_bus_message_skip(message, std::string(1, type).c_str());
        else if (sd_bus_message_enter_container(message, type, contents) > 0) {
            collectTexts(message, texts);
            sd_bus_message_exit_container(message);
        } else
            return;
    }
}

} // namespace

struct BusService::Connection {
    sd_bus* bus = nullptr;
    ~Connection() { sd_bus_flush_close_unref(bus); }
};

BusService::BusService(const std::string& address, const std::string& name, const std::string& path)
    : path_(path), connection_(std::make_unique<Connection>()) {
    check(sd_bus_new(&connection_->bus), "bus");
    sd_bus* bus = connection_->bus;
    check(sd_bus_set_address(bus, address.c_str()), address);
    check(sd_bus_set_bus_client(bus, 1), address);
    check(sd_bus_start(bus), address);
    check(sd_bus_request_name(bus, name.c_str(), 0), name);
    check(sd_bus_add_object(
              bus, nullptr, path.c_str(),
              [](sd_bus_message* m, void* self, sd_bus_error*) {
                  return static_cast<BusService*>(self)->answer(m);
              },
              this),
          path);
    thread_ = std::thread([this] { run(); });
}

BusService::~BusService() {
    ends_ = true;
    thread_.join();
}

void BusService::setProperty(const std::string& name, Value value) {
    const std::lock_guard guard(mutex_);
    properties_.insert_or_assign(name, value);
    changed_.push_back(name);
}

void BusService::setReply(const std::string& method, Value value) {
    const std::lock_guard guard(mutex_);
    replies_.insert_or_assign(method, value);
}

std::vector<BusService::Call> BusService::calls() const {
    const std::lock_guard guard(mutex_);
    return calls_;
}

int BusService::answer(sd_bus_message* message) {
    const std::lock_guard guard(mutex_);
    Call call{std::string(sd_bus_message_get_interface(message)) + "." + sd_bus_message_get_member(message),
              {}};
    collectTexts(message, call.texts);
    calls_.push_back(call);
    if (silent_)
        return 1;
    const bool isProperty = call.method == "org.freedesktop.DBus.Properties.Get" && call.texts.size() == 2;
    const auto& values = isProperty ? properties_ : replies_;
    const auto found = values.find(isProperty ? call.texts[0] + "." + call.texts[1] : call.method);
    if (found == values.end())
        return sd_bus_reply_method_errorf(message, SD_BUS_ERROR_UNKNOWN_METHOD, "not here");
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(message, &reply);
    isProperty ? appendVariant(reply, found->second) : append(reply, found->second);
    const int result = sd_bus_send(connection_->bus, reply, nullptr);
    sd_bus_message_unref(reply);
    return result < 0 ? result : 1;
}

void BusService::announce(const std::string& property, const Value& value) {
    const size_t dot = property.rfind('.');
    sd_bus_message* signal = nullptr;
    sd_bus_message_new_signal(connection_->bus, &signal, path_.c_str(), "org.freedesktop.DBus.Properties",
                              "PropertiesChanged");
    sd_bus_message_append(signal, "s", property.substr(0, dot).c_str());
    sd_bus_message_open_container(signal, 'a', "{sv}");
    sd_bus_message_open_container(signal, 'e', "sv");
    sd_bus_message_append(signal, "s", property.substr(dot + 1).c_str());
    appendVariant(signal, value);
    sd_bus_message_close_container(signal);
    sd_bus_message_close_container(signal);
    sd_bus_message_append(signal, "as", 0);
    sd_bus_send(connection_->bus, signal, nullptr);
    sd_bus_message_unref(signal);
}

void BusService::run() {
    while (!ends_) {
        {
            const std::lock_guard guard(mutex_);
            for (const std::string& name : changed_)
                announce(name, properties_.at(name));
            changed_.clear();
        }
        const int result = sd_bus_process(connection_->bus, nullptr);
        if (result < 0)
            return;
        if (result == 0)
            sd_bus_wait(connection_->bus, turnMicroseconds);
    }
}

} // namespace vh::test

#include "Platform/Linux/service/Peers.h"

#include <fmt/format.h>
#include <optional>
#include <utility>

namespace vh {

namespace {

constexpr BusMethod credentials{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                "GetConnectionCredentials"};
constexpr std::chrono::microseconds answerLimit = std::chrono::seconds(30);

/// The number that is the value of a dictionary's entry, when it is one.
std::optional<uint32_t> readNumber(sd_bus_message* message) {
    uint32_t number = 0;
    if (sd_bus_message_enter_container(message, 'v', "u") > 0 &&
        sd_bus_message_read_basic(message, 'u', &number) > 0 && sd_bus_message_exit_container(message) > 0)
        return number;
    return std::nullopt;
}

/// Whether the answer, an a{sv}, tells the user.
bool readCredentials(sd_bus_message* answer, ServicePeer& peer) {
    bool hasUser = false;
    if (sd_bus_message_is_method_error(answer, nullptr) > 0 ||
        sd_bus_message_enter_container(answer, 'a', "{sv}") <= 0)
        return false;
    while (sd_bus_message_enter_container(answer, 'e', "sv") > 0) {
        const char* key = nullptr;
        if (sd_bus_message_read_basic(answer, 's', &key) <= 0)
            return false;
        const std::string_view name(key);
        if (name == "UnixUserID" || name == "ProcessID") {
            const auto number = readNumber(answer);
            if (!number)
                return false;
            if (name == "ProcessID")
                peer.processID = *number;
            else {
                peer.userID = *number;
                hasUser = true;
            }
        } else if (sd_bus_message_skip(answer, "v") < 0)
            return false;
        if (sd_bus_message_exit_container(answer) < 0)
            return false;
    }
    return hasUser;
}

} // namespace

void Peers::identify(const std::string& name, std::function<void(const ServicePeer*)> told) {
    const auto [found, isNew] =
        entries_.try_emplace(name, Entry{*this, {.connection = name}, {}, {}, false, {}});
    Entry& entry = found->second;
    if (entry.isKnown)
        return told(&entry.peer);
    entry.waiting.push_back(std::move(told));
    if (isNew)
        ask(entry);
}

/// First its departure is watched, then it is asked for: whoever left before is unknown, whoever leaves later is seen.
void Peers::ask(Entry& entry) {
    const std::string match =
        fmt::format("type='signal',sender='org.freedesktop.DBus',"
                    "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='{}'",
                    entry.peer.connection);
    sd_bus_slot* slot = nullptr;
    checkBus(sd_bus_add_match_async(
                 bus_, &slot, match.c_str(),
                 [](sd_bus_message*, void* data, sd_bus_error*) {
                     Entry& self = *static_cast<Entry*>(data);
                     self.owner.leave(std::string(self.peer.connection));
                     return 0;
                 },
                 nullptr, &entry),
             "NameOwnerChanged");
    entry.departure.reset(slot);
    const BusMessage message = newCall(bus_, credentials, BusStart::never);
    checkBus(sd_bus_message_append(message.get(), "s", entry.peer.connection.c_str()), credentials.member);
    checkBus(sd_bus_call_async(
                 bus_, &slot, message.get(),
                 [](sd_bus_message* answer, void* data, sd_bus_error*) {
                     Entry& self = *static_cast<Entry*>(data);
                     self.owner.answered(self, answer);
                     return 1;
                 },
                 &entry, static_cast<uint64_t>(answerLimit.count())),
             credentials.member);
    entry.question.reset(slot);
}

void Peers::answered(Entry& entry, sd_bus_message* answer) {
    entry.isKnown = readCredentials(answer, entry.peer);
    const auto waiting = std::move(entry.waiting);
    const ServicePeer peer = entry.peer;
    const bool isKnown = entry.isKnown;
    if (isKnown)
        entry.question.reset();
    else
        entries_.erase(peer.connection);
    for (const auto& told : waiting)
        told(isKnown ? &peer : nullptr);
}

/// A unique name is given once, so its only change is that it goes.
void Peers::leave(const std::string& name) {
    auto node = entries_.extract(name);
    if (node.empty())
        return;
    const Entry& entry = node.mapped();
    for (const auto& told : entry.waiting)
        told(nullptr);
    if (entry.isKnown)
        gone_(entry.peer);
}

} // namespace vh

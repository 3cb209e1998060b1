#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <systemd/sd-bus.h>

namespace vh {

struct BusCloser {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
using Bus = std::unique_ptr<sd_bus, BusCloser>;
using BusMessage = std::unique_ptr<sd_bus_message, BusCloser>;
using BusSlot = std::unique_ptr<sd_bus_slot, BusCloser>;

enum class BusKind { session, system };

/// A connection that is ready for calls. Throws std::runtime_error that says why there is none.
Bus connectBus(BusKind kind, std::chrono::microseconds limit);

/// Throws std::runtime_error with the reason when `result` is an error.
void checkBus(int result, const char* what);

/// One method of one object of a service.
struct BusMethod {
    const char* service;
    const char* path;
    const char* interface;
    const char* member;
};

enum class BusStart { allowed, never }; ///< whether the bus may start the service for this call

BusMessage newCall(sd_bus* bus, const BusMethod& method, BusStart start);

/// How a call ended: with an answer, or with what went wrong.
struct BusAnswer {
    BusMessage message;
    int code = 0;       ///< errno; 0 with an answer
    std::string reason; ///< in the service's or the system's words
    explicit operator bool() const { return message != nullptr; }
};
BusAnswer call(sd_bus* bus, const BusMessage& message, std::chrono::microseconds limit);

/// The call that asks for a property.
BusMessage newPropertyCall(sd_bus* bus, const BusMethod& property, BusStart start);

/// The single basic value of an answer, or of the variant in it: `type` is its letter.
template <class T>
std::optional<T> valueOf(const BusAnswer& answer, char type) {
    T value{};
    sd_bus_message* const message = answer.message.get();
    if (message == nullptr)
        return std::nullopt;
    if (const char inner[2] = {type, '\0'}; sd_bus_message_has_signature(message, "v") > 0 &&
                                            sd_bus_message_enter_container(message, 'v', inner) < 0)
        return std::nullopt;
    return sd_bus_message_read_basic(message, type, &value) > 0 ? std::optional(value) : std::nullopt;
}

} // namespace vh

#include "Platform/Linux/modules/BusCalls.h"

#include <cstring>
#include <fmt/format.h>
#include <stdexcept>

namespace vh {

using std::chrono::microseconds;
using std::chrono::steady_clock;

void checkBus(int result, const char* what) {
    if (result < 0)
        throw std::runtime_error(fmt::format("{}: {}", what, std::strerror(-result)));
}

Bus connectBus(BusKind kind, microseconds limit) {
    const char* const name = kind == BusKind::session ? "session bus" : "system bus";
    const auto end = steady_clock::now() + limit;
    sd_bus* opened = nullptr;
    checkBus(kind == BusKind::session ? sd_bus_open_user(&opened) : sd_bus_open_system(&opened), name);
    Bus bus(opened);
    int ready = 0;
    while ((ready = sd_bus_is_ready(opened)) == 0) {
        const auto left = std::chrono::duration_cast<microseconds>(end - steady_clock::now());
        if (left.count() <= 0)
            checkBus(-ETIMEDOUT, name);
        const int done = sd_bus_process(opened, nullptr);
        checkBus(done, name);
        if (done == 0)
            checkBus(sd_bus_wait(opened, static_cast<uint64_t>(left.count())), name);
    }
    checkBus(ready, name);
    return bus;
}

BusMessage newCall(sd_bus* bus, const BusMethod& method, BusStart start) {
    sd_bus_message* message = nullptr;
    checkBus(sd_bus_message_new_method_call(bus, &message, method.service, method.path, method.interface,
                                            method.member),
             method.member);
    sd_bus_message_set_auto_start(message, start == BusStart::allowed);
    return BusMessage(message);
}

BusMessage newPropertyCall(sd_bus* bus, const BusMethod& property, BusStart start) {
    BusMessage message =
        newCall(bus, {property.service, property.path, "org.freedesktop.DBus.Properties", "Get"}, start);
    checkBus(sd_bus_message_append(message.get(), "ss", property.interface, property.member),
             property.member);
    return message;
}

BusAnswer call(sd_bus* bus, const BusMessage& message, microseconds limit) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call(bus, message.get(), static_cast<uint64_t>(limit.count()), &error, &reply);
    BusAnswer answer{BusMessage(reply), result < 0 ? -result : 0, {}};
    if (result < 0)
        answer.reason = error.message != nullptr ? error.message : std::strerror(-result);
    sd_bus_error_free(&error);
    return answer;
}

} // namespace vh

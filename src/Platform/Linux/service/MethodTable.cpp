#include "Platform/Linux/service/MethodTable.h"

#include "Platform/Linux/service/BusValues.h"

#include <algorithm>
#include <utility>

namespace vh {

MethodTable::MethodTable(sd_bus* bus, const ServiceIdentity& identity, std::span<const ServiceMethod> methods,
                         Take take)
    : methods_(methods), take_(std::move(take)) {
    const auto answer = [](sd_bus_message* request, void* self, sd_bus_error*) {
        return static_cast<MethodTable*>(self)->answer(request);
    };
    const auto word = [this](std::string text) {
        return words_.emplace_back(std::move(text)).c_str();
    };
    rows_.push_back(SD_BUS_VTABLE_START(0));
    // "Unprivileged", since the library would otherwise ask, and wait, for the peer's capabilities.
    for (const ServiceMethod& method : methods)
        rows_.push_back(SD_BUS_METHOD(word(std::string(method.name)), word(signatureOf(method.arguments)),
                                      word(signatureOf(method.replies)), answer, SD_BUS_VTABLE_UNPRIVILEGED));
    rows_.push_back(SD_BUS_VTABLE_END);
    sd_bus_slot* slot = nullptr;
    checkBus(sd_bus_add_object_vtable(bus, &slot, identity.path.c_str(), identity.interface.c_str(),
                                      rows_.data(), this),
             identity.path.c_str());
    slot_.reset(slot);
}

int MethodTable::answer(sd_bus_message* request) {
    const auto method = std::ranges::find(methods_, std::string_view(sd_bus_message_get_member(request)),
                                          &ServiceMethod::name);
    take_(*method, request); // it is there, or the library would not have called
    return 1;
}

} // namespace vh

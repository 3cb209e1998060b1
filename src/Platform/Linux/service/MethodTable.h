#pragma once

#include "Platform/Linux/modules/BusCalls.h"
#include "Platform/ServiceMessage.h"

#include <functional>
#include <list>
#include <span>
#include <string>
#include <vector>

namespace vh {

/// An object on the bus with these methods, that the bus's library checks the signatures of and describes to whoever
/// asks what there is. The bus and `methods` outlive it.
class MethodTable {
public:
    using Take = std::function<void(const ServiceMethod&, sd_bus_message*)>;

    /// `take` gets each call, answers it then or later, and throws nothing. Throws std::runtime_error.
    MethodTable(sd_bus* bus, const ServiceIdentity& identity, std::span<const ServiceMethod> methods,
                Take take);
    MethodTable(const MethodTable&) = delete;
    MethodTable& operator=(const MethodTable&) = delete;

private:
    int answer(sd_bus_message* request);

    const std::span<const ServiceMethod> methods_;
    const Take take_;
    std::list<std::string> words_; ///< that the rows point to
    std::vector<sd_bus_vtable> rows_;
    BusSlot slot_;
};

} // namespace vh

#pragma once

#include "Platform/MainLoop.h"
#include "Platform/ServiceLink.h"

#include <memory>

namespace vh {

/// The part of ServiceLink that lies in the module "service": calls over the system bus. Loop's thread.
class ServiceBus {
public:
    virtual ~ServiceBus() = default;
    /// As ServiceLink's, with the ends on the loop's thread; they may not let go of this.
    virtual void call(const ServiceMethod& method, const ServiceValues& arguments,
                      ServiceLink::Ends ends) = 0;
};

/// What the module's entry gives.
struct ServiceModule {
    /// Throws std::runtime_error. The loop need not run yet, and outlives it.
    std::unique_ptr<ServiceBus> (*open)(MainLoop& loop, const ServiceIdentity& identity);
};

} // namespace vh

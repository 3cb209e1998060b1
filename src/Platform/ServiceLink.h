#pragma once

#include "Platform/ServiceMessage.h"

#include <functional>
#include <memory>

namespace vh {

/// A connection to the root service, that the system starts when it is called. Any thread.
class ServiceLink {
public:
    /// How a call ends, by one of both, once, on the link's own thread; never when the link goes first. The link may be
    /// let go in it.
    struct Ends {
        std::function<void(ServiceReply)> reply;
        std::function<void(std::string why)> lost; ///< the service or the bus went away, or is not there
    };

    virtual ~ServiceLink() = default;
    /// Returns at once. It has no deadline of its own: who gives up waiting lets the end, when it comes, do nothing.
    virtual void call(const ServiceMethod& method, const ServiceValues& arguments, Ends ends) = 0;
};

/// Connects, which blocks for a few seconds at most. Throws std::runtime_error that says why there is no bus. A link
/// that lost its bus stays lost.
std::shared_ptr<ServiceLink> openServiceLink(const ServiceIdentity& identity);

} // namespace vh

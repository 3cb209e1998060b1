#pragma once

#include "Platform/MainLoop.h"
#include "Platform/ServiceMessage.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace vh {

/// Who calls. All of it is told by the system, nothing by the message.
struct ServicePeer {
    uint32_t userID = ~0u;
    int64_t processID = 0;
    std::string connection; ///< names the peer for as long as it is connected
};

struct ServiceCall {
    const ServiceMethod& method;
    ServicePeer peer;
    ServiceValues arguments; ///< of the kinds that the method names
};

/// What a service does. Called on the loop's thread; may not let go of the host.
class ServiceHandler {
public:
    /// May be called from any thread, and when the host is gone already.
    using Answer = std::function<void(ServiceReply)>;

    virtual ~ServiceHandler() = default;
    /// Without looking at any file: whether the call may ever be granted. Asked before the authority is, so that nobody
    /// types a password for what is refused anyway.
    virtual std::optional<ServiceRefusal> check(const ServiceCall& call) = 0;
    /// Does it and answers once; returns soon.
    virtual void perform(ServiceCall call, Answer answer) = 0;
    /// The peer has left: its answers go nowhere. Comes once for each peer that called, and again after each call that
    /// was still being performed then, since that may have begun something.
    virtual void peerGone(const ServicePeer& peer) = 0;
};

/// How a service treats its peers.
struct ServiceRules {
    std::function<bool(const ServicePeer&)> needsNoAuthority = [](const ServicePeer& peer) {
        return peer.userID == 0;
    };
    std::chrono::milliseconds authorityLimit =
        std::chrono::minutes(2); ///< a person may have to type a password
    size_t mostCalls = 64;       ///< of one user, checked or performed at one time
};

/// A service on the system bus. Each call is read and bounded, its peer is told by the bus, the authority is asked
/// about the method's action, and only then it is performed. Nothing in it waits: a peer, an authority or a piece of
/// work that hangs keeps nobody else from being served. Loop's thread.
class ServiceHost {
public:
    virtual ~ServiceHost() = default;
    /// Whether calls are being checked or performed.
    virtual bool isBusy() const = 0;
    virtual bool isPerforming() const = 0;
    /// Gives the name up, so that the next call starts the service anew. What was sent until then is still served.
    virtual void leave() = 0;
};

/// `methods` and `handler` outlive it. `lost` is called once when the bus is gone, and may let go of the host. Blocks
/// until the name is had; throws std::runtime_error when it cannot be. In the library vh_ServiceHost.
std::unique_ptr<ServiceHost> openServiceHost(MainLoop& loop, const ServiceIdentity& identity,
                                             std::span<const ServiceMethod> methods, ServiceHandler& handler,
                                             std::function<void()> lost, ServiceRules rules = {});

} // namespace vh

#pragma once

#include "Platform/Posix/LoopGate.h"
#include "Platform/ServiceHost.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// Why the authority says no; nothing when it says yes.
using Verdict = std::optional<ServiceRefusal>;

/// The calls of a service from their arrival to their answer, whatever brings them. Nothing is thrown out of it. Loop's
/// thread.
class ServiceCalls {
public:
    /// What the system does for it.
    struct System {
        /// Tells who is behind a connection, at once or later; nothing when it cannot be known.
        std::function<void(const std::string& connection, std::function<void(const ServicePeer*)> told)>
            identify;
        /// Asks the authority, which tells later, once; letting go of the token takes the question back.
        std::function<std::shared_ptr<void>(const ServicePeer& peer, std::string_view action,
                                            std::function<void(const Verdict&)> told)>
            ask;
    };
    using Send = std::function<void(const ServiceReply&)>;

    ServiceCalls(MainLoop& loop, ServiceHandler& handler, ServiceRules rules, System system);
    ~ServiceCalls();
    ServiceCalls(const ServiceCalls&) = delete;
    ServiceCalls& operator=(const ServiceCalls&) = delete;

    /// `arguments` are nothing when they could not be read. `send` is called once, now or later, unless the peer leaves.
    void take(const ServiceMethod& method, const std::string& connection,
              std::optional<ServiceValues> arguments, Send send);
    /// The peer has left: what was not performed yet never will be, and nobody is answered.
    void forget(const ServicePeer& peer);

    bool isBusy() const { return !calls_.empty(); }
    bool isPerforming() const;

private:
    struct Call {
        const ServiceMethod& method;
        Send send; ///< nothing when there is nobody left to answer
        ServicePeer peer;
        ServiceValues arguments;
        std::shared_ptr<void> question;
        bool isPerformed = false;
    };

    template <class Step>
    void attempt(uint64_t id, Step step);
    void admit(uint64_t id, const ServicePeer& peer);
    std::optional<ServiceRefusal> objection(const Call& call) const;
    void perform(uint64_t id);
    void finish(uint64_t id, const ServiceReply& reply);

    ServiceHandler& handler_;
    const ServiceRules rules_;
    const System system_;
    const std::shared_ptr<LoopGate> gate_;
    std::map<uint64_t, Call> calls_;
    uint64_t lastID_ = 0;
};

} // namespace vh

#include "Platform/ServiceHost.h"

#include "Platform/Linux/service/Authority.h"
#include "Platform/Linux/service/BusLoop.h"
#include "Platform/Linux/service/BusValues.h"
#include "Platform/Linux/service/MethodTable.h"
#include "Platform/Linux/service/Peers.h"
#include "Platform/Posix/ServiceCalls.h"
#include "Platform/Posix/ServiceText.h"

#include <utility>

namespace vh {

namespace {

constexpr std::chrono::seconds connectLimit{10};

class BusServiceHost : public ServiceHost {
public:
    BusServiceHost(MainLoop& loop, const ServiceIdentity& identity, std::span<const ServiceMethod> methods,
                   ServiceHandler& handler, std::function<void()> lost, const ServiceRules& rules)
        : identity_(identity), bus_(loop, connectBus(BusKind::system, connectLimit), std::move(lost)),
          peers_(bus_.bus(), [this](const ServicePeer& peer) { calls_.forget(peer); }),
          calls_(loop, handler, rules, system(rules.authorityLimit)),
          table_(bus_.bus(), identity, methods,
                 [this](const ServiceMethod& method, sd_bus_message* request) { take(method, request); }) {
        // The last, so that whoever started this service by a call finds the object there.
        checkBus(sd_bus_request_name(bus_.bus(), identity.name.c_str(), 0), identity.name.c_str());
    }

    bool isBusy() const override { return calls_.isBusy(); }
    bool isPerforming() const override { return calls_.isPerforming(); }
    void leave() override {
        sd_bus_release_name(bus_.bus(), identity_.name.c_str());
        bus_.settle();
    }

private:
    ServiceCalls::System system(std::chrono::milliseconds limit) {
        return {.identify =
                    [this](const std::string& connection, std::function<void(const ServicePeer*)> told) {
                        peers_.identify(connection, std::move(told));
                    },
                .ask =
                    [this, limit](const ServicePeer& peer, std::string_view action,
                                  std::function<void(const Verdict&)> told) {
                        return askAuthority(bus_.bus(), peer.connection, action, limit, std::move(told));
                    }};
    }

    void take(const ServiceMethod& method, sd_bus_message* message) {
        const std::shared_ptr<sd_bus_message> request(sd_bus_message_ref(message), sd_bus_message_unref);
        const char* const sender = sd_bus_message_get_sender(message);
        calls_.take(method, sender != nullptr ? sender : "", readValues(message, method.arguments),
                    [this, &method, request](const ServiceReply& reply) {
                        send(method, request.get(), reply);
                        bus_.settle();
                    });
    }

    void send(const ServiceMethod& method, sd_bus_message* request, const ServiceReply& reply) {
        if (const auto* refusal = std::get_if<ServiceRefusal>(&reply))
            return refuse(request, *refusal);
        sd_bus_message* created = nullptr;
        sd_bus_message_new_method_return(request, &created);
        const BusMessage message(created);
        if (!message || !appendValues(created, method.replies, std::get<ServiceValues>(reply)) ||
            sd_bus_send(bus_.bus(), created, nullptr) < 0)
            refuse(request, {serviceRefusals::failed, "The answer could not be sent."});
    }

    void refuse(sd_bus_message* request, const ServiceRefusal& refusal) {
        const std::string name = identity_.errors + "." + refusal.code;
        sd_bus_reply_method_errorf(request, name.c_str(), "%s", sendableText(refusal.text).c_str());
    }

    const ServiceIdentity identity_;
    BusLoop bus_;
    Peers peers_;
    ServiceCalls calls_;
    MethodTable table_;
};

} // namespace

std::unique_ptr<ServiceHost> openServiceHost(MainLoop& loop, const ServiceIdentity& identity,
                                             std::span<const ServiceMethod> methods, ServiceHandler& handler,
                                             std::function<void()> lost, ServiceRules rules) {
    return std::make_unique<BusServiceHost>(loop, identity, methods, handler, std::move(lost), rules);
}

} // namespace vh

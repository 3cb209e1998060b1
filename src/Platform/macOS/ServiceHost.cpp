#include "Platform/ServiceHost.h"

#include "Platform/Posix/LoopGate.h"
#include "Platform/Posix/ServiceCalls.h"
#include "Platform/Posix/ServiceText.h"
#include "Platform/macOS/XpcValues.h"

#include <algorithm>
#include <map>
#include <utility>

namespace vh {

namespace {

/// Only programs that are signed as ours are let in, by the system: that is the authority here.
ServiceRules withoutAuthority(ServiceRules rules) {
    rules.needsNoAuthority = [](const ServicePeer&) {
        return true;
    };
    return rules;
}

/// What comes on XPC's queue is brought to the loop, through a gate since it may come when this is gone.
class XpcServiceHost : public ServiceHost {
public:
    XpcServiceHost(MainLoop& loop, const ServiceIdentity& identity, std::span<const ServiceMethod> methods,
                   ServiceHandler& handler, std::function<void()> lost, ServiceRules rules)
        : methods_(methods), lost_(std::move(lost)), signedAs_(identity.peers),
          gate_(std::make_shared<LoopGate>(loop)),
          queue_(dispatch_queue_create(identity.name.c_str(), nullptr)),
          listener_(xpc_connection_create_mach_service(identity.name.c_str(), queue_,
                                                       XPC_CONNECTION_MACH_SERVICE_LISTENER)),
          calls_(loop, handler, withoutAuthority(std::move(rules)),
                 {.identify =
                      [this](const std::string& connection,
                             const std::function<void(const ServicePeer*)>& told) {
                          told(&peers_.at(connection));
                      },
                  .ask = {}}) {
        const std::shared_ptr<LoopGate> gate = gate_; // the handler may outlive this
        xpc_connection_set_event_handler(listener_, ^(xpc_object_t event) {
          const Xpc held = holdXpc(event);
          LoopGate::post(gate, [this, held] { listened(held); });
        });
        xpc_connection_resume(listener_);
    }

    ~XpcServiceHost() override {
        gate_->close();
        xpc_connection_cancel(listener_);
        for (const auto& [name, connection] : connections_)
            xpc_connection_cancel(static_cast<xpc_connection_t>(connection.get()));
        xpc_release(listener_);
        dispatch_release(queue_);
    }

    bool isBusy() const override { return calls_.isBusy(); }
    bool isPerforming() const override { return calls_.isPerforming(); }
    void leave() override {
        lost_ = nullptr;
        xpc_connection_cancel(listener_);
    }

private:
    void listened(const Xpc& event) {
        if (xpc_get_type(event.get()) == XPC_TYPE_CONNECTION)
            accept(event);
        else if (event.get() == XPC_ERROR_CONNECTION_INVALID && lost_)
            std::exchange(lost_, nullptr)();
    }

    void accept(const Xpc& connection) {
        const auto peer = static_cast<xpc_connection_t>(connection.get());
        const std::string name = std::to_string(++lastPeer_);
        const bool isSafe = requireSigned(peer, signedAs_);
        xpc_connection_set_target_queue(peer, queue_);
        const std::shared_ptr<LoopGate> gate = gate_;
        xpc_connection_set_event_handler(peer, ^(xpc_object_t event) {
          const Xpc held = holdXpc(event);
          LoopGate::post(gate, [this, held, name] { heard(name, held); });
        });
        connections_.emplace(name, connection);
        xpc_connection_resume(peer);
        if (!isSafe)
            xpc_connection_cancel(peer);
    }

    void heard(const std::string& name, const Xpc& event) {
        const auto found = connections_.find(name);
        if (found == connections_.end())
            return;
        const auto peer = static_cast<xpc_connection_t>(found->second.get());
        if (xpc_get_type(event.get()) == XPC_TYPE_DICTIONARY) {
            peers_.try_emplace(
                name, ServicePeer{xpc_connection_get_euid(peer), xpc_connection_get_pid(peer), name});
            take(name, found->second, event);
        } else if (event.get() == XPC_ERROR_CONNECTION_INVALID) {
            connections_.erase(found);
            if (const auto known = peers_.extract(name); !known.empty())
                calls_.forget(known.mapped());
        }
    }

    void take(const std::string& name, const Xpc& connection, const Xpc& request) {
        const char* const word = xpc_dictionary_get_string(request.get(), xpcKeys::method);
        const auto method =
            std::ranges::find(methods_, std::string_view(word != nullptr ? word : ""), &ServiceMethod::name);
        if (method == methods_.end())
            return send(connection, request, {},
                        ServiceRefusal{serviceRefusals::badArguments, "There is no such method."});
        calls_.take(*method, name,
                    readValues(xpc_dictionary_get_value(request.get(), xpcKeys::values), method->arguments),
                    [connection, request, kinds = method->replies](const ServiceReply& reply) {
                        send(connection, request, kinds, reply);
                    });
    }

    static void send(const Xpc& connection, const Xpc& request, std::string_view kinds,
                     const ServiceReply& reply) {
        const Xpc answer = ownXpc(xpc_dictionary_create_reply(request.get()));
        if (!answer) // none was asked for
            return;
        const auto* values = std::get_if<ServiceValues>(&reply);
        const Xpc array = values != nullptr ? arrayOf(kinds, *values) : nullptr;
        if (array)
            xpc_dictionary_set_value(answer.get(), xpcKeys::values, array.get());
        else {
            const ServiceRefusal unsendable{serviceRefusals::failed, "The answer could not be sent."};
            const ServiceRefusal& refusal = values != nullptr ? unsendable : std::get<ServiceRefusal>(reply);
            xpc_dictionary_set_string(answer.get(), xpcKeys::code, refusal.code.c_str());
            xpc_dictionary_set_string(answer.get(), xpcKeys::words, sendableText(refusal.text).c_str());
        }
        xpc_connection_send_message(static_cast<xpc_connection_t>(connection.get()), answer.get());
    }

    const std::span<const ServiceMethod> methods_;
    std::function<void()> lost_;
    const std::string signedAs_;
    const std::shared_ptr<LoopGate> gate_;
    const dispatch_queue_t queue_;
    const xpc_connection_t listener_;
    uint64_t lastPeer_ = 0;
    std::map<std::string, Xpc> connections_;
    std::map<std::string, ServicePeer> peers_;
    ServiceCalls calls_;
};

} // namespace

std::unique_ptr<ServiceHost> openServiceHost(MainLoop& loop, const ServiceIdentity& identity,
                                             std::span<const ServiceMethod> methods, ServiceHandler& handler,
                                             std::function<void()> lost, ServiceRules rules) {
    return std::make_unique<XpcServiceHost>(loop, identity, methods, handler, std::move(lost),
                                            std::move(rules));
}

} // namespace vh

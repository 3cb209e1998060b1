#include "Platform/ServiceHost.h"

#include "Platform/Linux/service/Authority.h"
#include "Platform/Linux/service/BusLoop.h"
#include "Platform/Linux/service/BusValues.h"
#include "Platform/Linux/service/MethodTable.h"
#include "Platform/Linux/service/Peers.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

namespace vh {

namespace {

constexpr std::chrono::seconds connectLimit{10};

/// The way to the loop for answers from other threads, which may outlive the host.
class Gate {
public:
    explicit Gate(MainLoop& loop) : loop_(&loop) {}

    /// Calls `f` on the loop's thread, unless the gate is closed by then.
    static void post(const std::shared_ptr<Gate>& gate, std::function<void()> f) {
        const std::lock_guard lock(gate->mutex_);
        if (gate->loop_ != nullptr)
            gate->loop_->post([gate, f = std::move(f)] {
                if (gate->loop_ != nullptr)
                    f();
            });
    }
    /// On the loop's thread.
    void close() {
        const std::lock_guard lock(mutex_);
        loop_ = nullptr;
    }

private:
    std::mutex mutex_;
    MainLoop* loop_; ///< changed on the loop's thread alone
};

class BusServiceHost : public ServiceHost {
public:
    BusServiceHost(MainLoop& loop, const ServiceIdentity& identity, std::span<const ServiceMethod> methods,
                   ServiceHandler& handler, std::function<void()> lost, ServiceRules rules)
        : identity_(identity), handler_(handler), rules_(std::move(rules)),
          gate_(std::make_shared<Gate>(loop)),
          bus_(loop, connectBus(BusKind::system, connectLimit), std::move(lost)),
          peers_(bus_.bus(), [this](const ServicePeer& peer) { forget(peer); }),
          table_(bus_.bus(), identity, methods,
                 [this](const ServiceMethod& method, sd_bus_message* request) { take(method, request); }) {
        // The last, so that whoever started this service by a call finds the object there.
        checkBus(sd_bus_request_name(bus_.bus(), identity.name.c_str(), 0), identity.name.c_str());
    }
    ~BusServiceHost() override { gate_->close(); }

    bool isBusy() const override { return !calls_.empty(); }
    bool isPerforming() const override {
        return std::ranges::any_of(calls_, [](const auto& each) { return each.second.isPerformed; });
    }
    void leave() override {
        sd_bus_release_name(bus_.bus(), identity_.name.c_str());
        bus_.settle();
    }

private:
    struct Call {
        const ServiceMethod& method;
        BusMessage request; ///< nothing when there is nobody left to answer
        ServicePeer peer;
        ServiceValues arguments;
        std::shared_ptr<void> question;
        bool isPerformed = false;
    };
    using Calls = std::map<uint64_t, Call>;

    void take(const ServiceMethod& method, sd_bus_message* request);
    template <class Step>
    void attempt(uint64_t id, Step step);
    void admit(uint64_t id, const ServicePeer& peer);
    std::optional<ServiceRefusal> objection(const Call& call) const;
    void perform(uint64_t id);
    void finish(uint64_t id, const ServiceReply& reply);
    void send(const Call& call, const ServiceReply& reply);
    void refuse(sd_bus_message* request, const ServiceRefusal& refusal);
    void forget(const ServicePeer& peer);

    const ServiceIdentity identity_;
    ServiceHandler& handler_;
    const ServiceRules rules_;
    const std::shared_ptr<Gate> gate_;
    BusLoop bus_;
    Peers peers_;
    MethodTable table_;
    Calls calls_;
    uint64_t lastID_ = 0;
};

void BusServiceHost::take(const ServiceMethod& method, sd_bus_message* request) {
    const char* const sender = sd_bus_message_get_sender(request);
    auto arguments = readValues(request, method.arguments);
    if (sender == nullptr || !arguments)
        return refuse(request, {serviceRefusals::badArguments,
                                "The call was refused: it cannot be read or is too long."});
    const auto isSame = [&](const auto& each) {
        return each.second.peer.connection == sender;
    };
    if (size_t(std::ranges::count_if(calls_, isSame)) >= rules_.mostCalls)
        return refuse(request, {serviceRefusals::tooManyCalls, "Too many calls at one time."});
    const uint64_t id = ++lastID_;
    calls_.emplace(id, Call{.method = method,
                            .request = BusMessage(sd_bus_message_ref(request)),
                            .peer = {.connection = sender},
                            .arguments = std::move(*arguments)});
    attempt(id, [&] {
        peers_.identify(sender, [this, id](const ServicePeer* peer) {
            if (peer != nullptr)
                attempt(id, [&] { admit(id, *peer); });
            else
                finish(id, ServiceRefusal{
                               serviceRefusals::notAuthorized,
                               "You are not allowed to do this: the system does not tell who you are."});
        });
    });
}

/// Nothing may be thrown into the bus's library, which calls all of this.
template <class Step>
void BusServiceHost::attempt(uint64_t id, Step step) {
    try {
        step();
    } catch (const std::exception& error) {
        finish(id, ServiceRefusal{serviceRefusals::failed, error.what()});
    }
}

/// Now that it is known who calls.
void BusServiceHost::admit(uint64_t id, const ServicePeer& peer) {
    Call& call = calls_.at(id);
    call.peer = peer;
    if (auto refusal = objection(call))
        return finish(id, std::move(*refusal));
    if (call.method.action.empty() || rules_.needsNoAuthority(peer))
        return perform(id);
    call.question = askAuthority(bus_.bus(), peer.connection, call.method.action, rules_.authorityLimit,
                                 [this, id](const Verdict& verdict) {
                                     if (verdict)
                                         finish(id, *verdict);
                                     else
                                         perform(id);
                                 });
}

/// What speaks against it before the authority is asked.
std::optional<ServiceRefusal> BusServiceHost::objection(const Call& call) const {
    const auto isSame = [&](const auto& each) {
        return each.second.peer.userID == call.peer.userID;
    };
    if (size_t(std::ranges::count_if(calls_, isSame)) > rules_.mostCalls)
        return ServiceRefusal{serviceRefusals::tooManyCalls, "Too many calls at one time."};
    return handler_.check({call.method, call.peer, call.arguments});
}

void BusServiceHost::perform(uint64_t id) {
    Call& call = calls_.at(id);
    call.question.reset();
    call.isPerformed = true;
    attempt(id, [&] {
        handler_.perform({call.method, call.peer, std::move(call.arguments)},
                         [gate = gate_, this, id](ServiceReply reply) {
                             Gate::post(gate, [this, id, reply = std::move(reply)] {
                                 finish(id, reply);
                                 bus_.settle();
                             });
                         });
    });
}

/// Answers a call and lets it go; a second answer finds none.
void BusServiceHost::finish(uint64_t id, const ServiceReply& reply) {
    auto node = calls_.extract(id);
    if (!node.empty() && node.mapped().request)
        send(node.mapped(), reply);
}

void BusServiceHost::send(const Call& call, const ServiceReply& reply) {
    if (const auto* refusal = std::get_if<ServiceRefusal>(&reply))
        return refuse(call.request.get(), *refusal);
    sd_bus_message* created = nullptr;
    sd_bus_message_new_method_return(call.request.get(), &created);
    const BusMessage message(created);
    if (!message || !appendValues(created, call.method.replies, std::get<ServiceValues>(reply)) ||
        sd_bus_send(bus_.bus(), created, nullptr) < 0)
        refuse(call.request.get(), {serviceRefusals::failed, "The answer could not be sent."});
}

void BusServiceHost::refuse(sd_bus_message* request, const ServiceRefusal& refusal) {
    const std::string name = identity_.errors + "." + refusal.code;
    sd_bus_reply_method_errorf(request, name.c_str(), "%s", sendableText(refusal.text).c_str());
}

/// What was not performed yet never will be.
void BusServiceHost::forget(const ServicePeer& peer) {
    for (auto each = calls_.begin(); each != calls_.end();) {
        Call& call = each->second;
        const bool isTheirs = call.peer.connection == peer.connection;
        if (isTheirs)
            call.request.reset();
        each = isTheirs && !call.isPerformed ? calls_.erase(each) : std::next(each);
    }
    handler_.peerGone(peer);
}

} // namespace

std::unique_ptr<ServiceHost> openServiceHost(MainLoop& loop, const ServiceIdentity& identity,
                                             std::span<const ServiceMethod> methods, ServiceHandler& handler,
                                             std::function<void()> lost, ServiceRules rules) {
    return std::make_unique<BusServiceHost>(loop, identity, methods, handler, std::move(lost),
                                            std::move(rules));
}

} // namespace vh

#include "Platform/Posix/ServiceCalls.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vh {

namespace {

ServiceRefusal tooMany() {
    return {serviceRefusals::tooManyCalls, "Too many calls at one time."};
}

} // namespace

ServiceCalls::ServiceCalls(MainLoop& loop, ServiceHandler& handler, ServiceRules rules, System system)
    : handler_(handler), rules_(std::move(rules)), system_(std::move(system)),
      gate_(std::make_shared<LoopGate>(loop)) {}

ServiceCalls::~ServiceCalls() {
    gate_->close();
}

bool ServiceCalls::isPerforming() const {
    return std::ranges::any_of(calls_, [](const auto& each) { return each.second.isPerformed; });
}

void ServiceCalls::take(const ServiceMethod& method, const std::string& connection,
                        std::optional<ServiceValues> arguments, Send send) {
    if (!arguments)
        return send(ServiceRefusal{serviceRefusals::badArguments,
                                   "The call was refused: it cannot be read or is too long."});
    const auto isSame = [&](const auto& each) {
        return each.second.peer.connection == connection;
    };
    if (size_t(std::ranges::count_if(calls_, isSame)) >= rules_.mostCalls)
        return send(tooMany());
    const uint64_t id = ++lastID_;
    calls_.emplace(id, Call{.method = method,
                            .send = std::move(send),
                            .peer = {.connection = connection},
                            .arguments = std::move(*arguments)});
    attempt(id, [&] {
        system_.identify(connection, [this, id](const ServicePeer* peer) {
            if (peer != nullptr)
                attempt(id, [&] { admit(id, *peer); });
            else
                finish(id, ServiceRefusal{
                               serviceRefusals::notAuthorized,
                               "You are not allowed to do this: the system does not tell who you are."});
        });
    });
}

/// The system's libraries, which call all of this, know no exceptions.
template <class Step>
void ServiceCalls::attempt(uint64_t id, Step step) {
    try {
        step();
    } catch (const std::exception& error) {
        finish(id, ServiceRefusal{serviceRefusals::failed, error.what()});
    }
}

/// Now that it is known who calls.
void ServiceCalls::admit(uint64_t id, const ServicePeer& peer) {
    Call& call = calls_.at(id);
    call.peer = peer;
    if (auto refusal = objection(call))
        return finish(id, std::move(*refusal));
    if (call.method.action.empty() || rules_.needsNoAuthority(peer))
        return perform(id);
    call.question = system_.ask(peer, call.method.action, [this, id](const Verdict& verdict) {
        if (verdict)
            finish(id, *verdict);
        else
            perform(id);
    });
}

/// What speaks against it before the authority is asked.
std::optional<ServiceRefusal> ServiceCalls::objection(const Call& call) const {
    const auto isSame = [&](const auto& each) {
        return each.second.peer.userID == call.peer.userID;
    };
    if (size_t(std::ranges::count_if(calls_, isSame)) > rules_.mostCalls)
        return tooMany();
    return handler_.check({call.method, call.peer, call.arguments});
}

void ServiceCalls::perform(uint64_t id) {
    Call& call = calls_.at(id);
    call.question.reset();
    call.isPerformed = true;
    attempt(id, [&] {
        handler_.perform({call.method, call.peer, std::move(call.arguments)}, [gate = gate_, this,
                                                                               id](ServiceReply reply) {
            LoopGate::post(gate, [this, id, reply = std::move(reply)] { finish(id, reply); });
        });
    });
}

/// Answers a call and lets it go; a second answer finds none.
void ServiceCalls::finish(uint64_t id, const ServiceReply& reply) {
    const auto node = calls_.extract(id);
    if (node.empty())
        return;
    if (node.mapped().send)
        node.mapped().send(reply);
    else
        handler_.peerGone(node.mapped().peer);
}

void ServiceCalls::forget(const ServicePeer& peer) {
    for (auto each = calls_.begin(); each != calls_.end();) {
        Call& call = each->second;
        const bool isTheirs = call.peer.connection == peer.connection;
        if (isTheirs)
            call.send = nullptr;
        each = isTheirs && !call.isPerformed ? calls_.erase(each) : std::next(each);
    }
    handler_.peerGone(peer);
}

} // namespace vh

#include "Platform/Linux/ServiceModule.h"

#include "Platform/Linux/service/BusLoop.h"
#include "Platform/Linux/service/BusValues.h"

#include <cstring>
#include <map>
#include <stdexcept>
#include <utility>

namespace vh {

namespace {

constexpr std::chrono::seconds connectLimit{5};

/// The reply to a call as its caller understands it: the service's own refusal, or why there is none.
void end(const ServiceLink::Ends& ends, const ServiceIdentity& identity, const std::string& replies,
         sd_bus_message* answer) {
    if (const sd_bus_error* error = sd_bus_message_get_error(answer)) {
        const std::string_view name(error->name);
        const std::string words = error->message != nullptr ? error->message : error->name;
        const std::string beginning = identity.errors + ".";
        if (name.starts_with(beginning))
            ends.reply(ServiceRefusal{std::string(name.substr(beginning.size())), words});
        else
            ends.lost(words);
    } else if (auto values = readValues(answer, replies))
        ends.reply(std::move(*values));
    else
        ends.lost("the answer could not be read");
}

class SdServiceBus : public ServiceBus {
public:
    SdServiceBus(MainLoop& loop, ServiceIdentity identity)
        : identity_(std::move(identity)),
          bus_(loop, connectBus(BusKind::system, connectLimit), [] { /* its calls are told */ }) {}

    void call(const ServiceMethod& method, const ServiceValues& arguments, ServiceLink::Ends ends) override {
        const uint64_t id = ++lastID_;
        auto& call = *calls_
                          .emplace(id, std::make_unique<Call>(
                                           Call{*this, id, std::string(method.replies), std::move(ends), {}}))
                          .first->second;
        try {
            if (!send(method, arguments, call))
                return take(id).ends.reply(
                    ServiceRefusal{serviceRefusals::badArguments, "The call is too long or holds no text."});
        } catch (const std::runtime_error& error) {
            return take(id).ends.lost(error.what());
        }
        bus_.settle();
    }

private:
    struct Call {
        SdServiceBus& owner;
        uint64_t id;
        std::string replies;
        ServiceLink::Ends ends;
        BusSlot slot;
    };

    bool send(const ServiceMethod& method, const ServiceValues& arguments, Call& call) {
        const std::string member(method.name);
        const BusMessage message = newCall(
            bus_.bus(),
            {identity_.name.c_str(), identity_.path.c_str(), identity_.interface.c_str(), member.c_str()},
            BusStart::allowed);
        if (!appendValues(message.get(), method.arguments, arguments))
            return false;
        sd_bus_slot* slot = nullptr;
        // The caller has a deadline; the bus has none.
        checkBus(sd_bus_call_async(
                     bus_.bus(), &slot, message.get(),
                     [](sd_bus_message* answer, void* data, sd_bus_error*) {
                         const Call& asked = *static_cast<Call*>(data);
                         SdServiceBus& self = asked.owner;
                         const Call ended = self.take(asked.id);
                         end(ended.ends, self.identity_, ended.replies, answer);
                         return 1;
                     },
                     &call, UINT64_MAX),
                 member.c_str());
        call.slot.reset(slot);
        return true;
    }

    Call take(uint64_t id) { return std::move(*calls_.extract(id).mapped()); }

    const ServiceIdentity identity_;
    BusLoop bus_;
    std::map<uint64_t, std::unique_ptr<Call>> calls_;
    uint64_t lastID_ = 0;
};

} // namespace

} // namespace vh

extern "C" void* vhModule() {
    static vh::ServiceModule module{
        [](vh::MainLoop& loop, const vh::ServiceIdentity& identity) -> std::unique_ptr<vh::ServiceBus> {
            return std::make_unique<vh::SdServiceBus>(loop, identity);
        }};
    return &module;
}

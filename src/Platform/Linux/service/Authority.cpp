#include "Platform/Linux/service/Authority.h"

#include <utility>

namespace vh {

namespace {

constexpr const char* service = "org.freedesktop.PolicyKit1";
constexpr BusMethod checkAuthorization{service, "/org/freedesktop/PolicyKit1/Authority",
                                       "org.freedesktop.PolicyKit1.Authority", "CheckAuthorization"};
constexpr BusMethod cancelCheck{service, checkAuthorization.path, checkAuthorization.interface,
                                "CancelCheckAuthorization"};
constexpr uint32_t mayAskThePerson = 1;

ServiceRefusal refusal(const std::string& why) {
    return {serviceRefusals::notAuthorized, "You are not allowed to do this: " + why};
}

Verdict verdictOfError(const sd_bus_error& error) {
    if (sd_bus_error_has_name(&error, SD_BUS_ERROR_SERVICE_UNKNOWN) > 0 ||
        sd_bus_error_has_name(&error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) > 0)
        return refusal("polkit, which could allow it, is not on this system.");
    if (sd_bus_error_has_name(&error, SD_BUS_ERROR_NO_REPLY) > 0 ||
        sd_bus_error_has_name(&error, SD_BUS_ERROR_TIMEOUT) > 0)
        return refusal("nobody allowed it in time.");
    return refusal(error.message != nullptr ? error.message : error.name);
}

/// The answer is (bba{ss}): whether, whether it could be asked for, and details.
Verdict verdictOf(sd_bus_message* answer) {
    if (const sd_bus_error* error = sd_bus_message_get_error(answer))
        return verdictOfError(*error);
    int isAllowed = 0, isChallenge = 0;
    if (sd_bus_message_has_signature(answer, "(bba{ss})") <= 0 ||
        sd_bus_message_enter_container(answer, 'r', "bba{ss}") <= 0 ||
        sd_bus_message_read(answer, "bb", &isAllowed, &isChallenge) <= 0)
        return refusal("polkit’s answer could not be read.");
    if (isAllowed != 0)
        return std::nullopt;
    return refusal(isChallenge != 0 ? "there is nobody who could be asked for permission."
                                    : "permission was not given.");
}

class Question {
public:
    Question(sd_bus* bus, std::function<void(const Verdict&)> told) : bus_(bus), told_(std::move(told)) {}
    ~Question() {
        if (slot_)
            takeBack();
    }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

    void ask(const std::string& peer, std::string_view action, std::chrono::microseconds limit) {
        static uint64_t count = 0;
        id_ = "varnholt-" + std::to_string(++count);
        const BusMessage message = newCall(bus_, checkAuthorization, BusStart::allowed);
        checkBus(sd_bus_message_append(message.get(), "(sa{sv})sa{ss}us", "system-bus-name", 1, "name", "s",
                                       peer.c_str(), std::string(action).c_str(), 0, mayAskThePerson,
                                       id_.c_str()),
                 checkAuthorization.member);
        sd_bus_slot* slot = nullptr;
        checkBus(sd_bus_call_async(
                     bus_, &slot, message.get(),
                     [](sd_bus_message* answer, void* self, sd_bus_error*) {
                         static_cast<Question*>(self)->answered(answer);
                         return 1;
                     },
                     this, static_cast<uint64_t>(limit.count())),
                 checkAuthorization.member);
        slot_.reset(slot);
    }

private:
    void answered(sd_bus_message* answer) {
        const Verdict verdict = verdictOf(answer);
        // An answer that the bus made up, or one that came too late, leaves a window that asks.
        if (sd_bus_message_is_method_error(answer, SD_BUS_ERROR_NO_REPLY) > 0)
            takeBack();
        slot_.reset();
        // The last: it may let go of this.
        std::exchange(told_, nullptr)(verdict);
    }

    void takeBack() {
        const BusMessage message = newCall(bus_, cancelCheck, BusStart::never);
        sd_bus_message_append(message.get(), "s", id_.c_str());
        sd_bus_message_set_expect_reply(message.get(), 0);
        sd_bus_send(bus_, message.get(), nullptr);
    }

    sd_bus* bus_;
    std::function<void(const Verdict&)> told_;
    std::string id_;
    BusSlot slot_; ///< while it is not answered
};

} // namespace

std::shared_ptr<void> askAuthority(sd_bus* bus, const std::string& peer, std::string_view action,
                                   std::chrono::microseconds limit,
                                   std::function<void(const Verdict&)> told) {
    auto question = std::make_shared<Question>(bus, std::move(told));
    question->ask(peer, action, limit);
    return question;
}

} // namespace vh

#include "Platform/Linux/modules/BusCalls.h"
#include "Platform/ServiceHost.h"
#include "Platform/ServiceLink.h"
#include "Platform/macOS/CodeRequirement.h"
#include "support/AsUser.h"
#include "support/BusService.h"
#include "support/PrivateBus.h"
#include "support/TurnedLoop.h"

#include <future>
#include <gmock/gmock.h>
#include <unistd.h>

namespace vh {
namespace {

using namespace std::chrono_literals;
using test::BusService;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

constexpr auto interface = "org.freedesktop.PolicyKit1.Authority";
const std::string asked = std::string(interface) + ".CheckAuthorization";
const std::string takenBack = std::string(interface) + ".CancelCheckAuthorization";

const ServiceIdentity identity{"org.example.Test", "/org/example/Test", "org.example.Test1",
                               "org.example.no"};
constexpr ServiceMethod echo{"Echo", "bxsy", "bxsy", ""};
constexpr ServiceMethod hang{"Hang", "", "", ""};
constexpr ServiceMethod act{"Act", "s", "b", "org.example.act"};
constexpr std::array methods{echo, hang, act};
const ServiceValues sample{true, int64_t{-5}, "año", ServiceBytes{"/tmp/\xff"}};
const ServiceValues acted{true};

/// Answers what it was given from another thread, hangs until the test answers, and notes what it was made to do.
struct Handler : ServiceHandler {
    std::vector<std::string> done, gone;
    std::vector<Answer> hanging;
    std::vector<uint32_t> users;
    std::optional<ServiceReply> instead;

    std::optional<ServiceRefusal> check(const ServiceCall& call) override {
        if (call.method.name == act.name && std::get<std::string>(call.arguments[0]) == "never")
            return ServiceRefusal{"denied", "Never: ñ"};
        return std::nullopt;
    }
    void perform(ServiceCall call, Answer answer) override {
        users.push_back(call.peer.userID);
        done.emplace_back(call.method.name);
        if (call.method.name == hang.name)
            return hanging.push_back(answer);
        const ServiceReply reply = instead.value_or(call.method.name == act.name ? acted : call.arguments);
        std::thread(answer, reply).join();
    }
    void peerGone(const ServicePeer& peer) override { gone.push_back(peer.connection); }
};

struct Polkit : BusService {
    explicit Polkit(const test::PrivateBus& bus)
        : BusService(bus.address(), "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority") {}
    void say(bool yes) { setReply(asked, Verdict{yes}); }
    bool was(const std::string& method) const {
        return std::ranges::count(calls(), method, &Call::method) > 0;
    }
};

class ServiceTest : public testing::Test {
protected:
    using Ending = std::future<ServiceReply>;

    void open(ServiceRules rules) {
        host_ = openServiceHost(
            loop_, identity, methods, handler_, [this] { ++losses_; }, std::move(rules));
    }
    /// Everybody needs the authority's word, as this user may be root.
    static ServiceRules strict(std::chrono::milliseconds limit = 60s) {
        return {.needsNoAuthority = [](const ServicePeer&) { return false; }, .authorityLimit = limit};
    }

    static Ending call(ServiceLink& link, const ServiceMethod& method, const ServiceValues& values) {
        auto ended = std::make_shared<std::promise<ServiceReply>>();
        link.call(method, values,
                  {[ended](ServiceReply reply) { ended->set_value(std::move(reply)); },
                   [ended](std::string why) {
                       ended->set_value(ServiceRefusal{"lost", why});
                   }});
        return ended->get_future();
    }
    ServiceReply outcome(Ending ending) {
        loop_.waitUntil("the call ends", [&] { return ending.wait_for(0s) == std::future_status::ready; });
        return ending.get();
    }
    ServiceReply outcome(const ServiceMethod& method, const ServiceValues& values) {
        return outcome(call(*link_, method, values));
    }
    static std::string codeOf(const ServiceReply& reply) {
        const auto* refusal = std::get_if<ServiceRefusal>(&reply);
        return refusal != nullptr ? refusal->code : "done";
    }

    test::PrivateBus bus_{test::PrivateBus::Kind::system};
    test::TurnedLoop loop_;
    Handler handler_;
    int losses_ = 0;
    std::unique_ptr<ServiceHost> host_;
    std::shared_ptr<ServiceLink> link_ = openServiceLink(identity);
};

TEST_F(ServiceTest, WhatIsSentArrivesAsItWas) {
    open({});
    std::string everyByte;
    for (int i = 0; i < 256; ++i)
        everyByte += static_cast<char>(i);
    const std::string longest(mostServiceBytes, 'x');
    for (const ServiceValues& values :
         {sample, ServiceValues{false, INT64_MIN, "", ServiceBytes{}},
          ServiceValues{true, INT64_MAX, longest, ServiceBytes{longest}},
          ServiceValues{true, int64_t{0}, "\U0001F600", ServiceBytes{everyByte}}})
        EXPECT_TRUE(outcome(echo, values) == ServiceReply(values));
    EXPECT_EQ(handler_.users.back(), ::geteuid());
}

TEST_F(ServiceTest, WhatCannotBeSaidIsRefusedAndTheConnectionStands) {
    open({});
    const std::string tooLong(mostServiceBytes + 1, 'x');
    for (const ServiceValue& text :
         {ServiceValue(tooLong), ServiceValue("\xff"), ServiceValue(std::string(1, '\0'))})
        EXPECT_EQ(codeOf(outcome(act, {text})), serviceRefusals::badArguments);
    for (const ServiceReply& answer : {ServiceReply(ServiceValues{true, int64_t{0}, "\xff", ServiceBytes{}}),
                                       ServiceReply(ServiceValues{})}) {
        handler_.instead = answer;
        EXPECT_EQ(codeOf(outcome(echo, sample)), serviceRefusals::failed);
    }
    handler_.instead = ServiceRefusal{"denied", "Path not allowed: /\xff"};
    EXPECT_EQ(outcome(echo, sample), ServiceReply(ServiceRefusal{"denied", "Path not allowed: /?"}));
}

TEST_F(ServiceTest, AMessageThatIsNoProperCallIsRefused) {
    open({});
    const std::string tooLong(mostServiceBytes + 1, 'x');
    const struct {
        const char* member;
        const char* signature;
        const char* text;
        const char* error;
    } cases[]{{"Act", "as", "a", "org.freedesktop.DBus.Error.InvalidArgs"},
              {"Act", "", "", "org.freedesktop.DBus.Error.InvalidArgs"},
              {"Act", "ss", "a", "org.freedesktop.DBus.Error.InvalidArgs"},
              {"Act", "s", tooLong.c_str(), "org.example.no.badArguments"},
              {"Erase", "s", "a", "org.freedesktop.DBus.Error.UnknownMethod"}};
    for (const auto& each : cases) {
        auto error = std::async(std::launch::async, [&] {
            const Bus bus = connectBus(BusKind::system, 10s);
            const BusMessage message = newCall(
                bus.get(), {"org.example.Test", "/org/example/Test", "org.example.Test1", each.member},
                BusStart::never);
            const std::string_view signature(each.signature);
            if (signature == "as")
                sd_bus_message_append(message.get(), "as", 1, each.text);
            else
                sd_bus_message_append(message.get(), each.signature, each.text, each.text);
            sd_bus_error said = SD_BUS_ERROR_NULL;
            sd_bus_call(bus.get(), message.get(), 10'000'000, &said, nullptr);
            const std::string name = said.name != nullptr ? said.name : "none";
            sd_bus_error_free(&said);
            return name;
        });
        loop_.waitUntil("it is answered", [&] { return error.wait_for(0s) == std::future_status::ready; });
        EXPECT_EQ(error.get(), each.error) << each.member << " " << each.signature;
    }
    EXPECT_TRUE(handler_.done.empty());
}

TEST_F(ServiceTest, TheAuthorityDecides) {
    open(strict());
    EXPECT_EQ(codeOf(outcome(act, {"x"})), serviceRefusals::notAuthorized) << "no polkit";
    Polkit polkit(bus_);
    polkit.say(false);
    const ServiceReply no = outcome(act, {"x"});
    EXPECT_THAT(std::get<ServiceRefusal>(no).text, HasSubstr("You are not allowed to do this: "));
    EXPECT_THAT(polkit.calls().back().texts, IsSupersetOf({"system-bus-name", "org.example.act"}));
    EXPECT_THAT(handler_.done, ElementsAre());

    polkit.say(true);
    EXPECT_EQ(outcome(act, {"x"}), ServiceReply(acted));
    const size_t questions = polkit.calls().size();
    EXPECT_EQ(outcome(act, {"never"}), ServiceReply(ServiceRefusal{"denied", "Never: ñ"}));
    EXPECT_EQ(outcome(echo, sample), ServiceReply(sample));
    EXPECT_EQ(polkit.calls().size(), questions) << "asked about what needs no word of it";
}

TEST_F(ServiceTest, AnAuthorityThatSaysNothingIsWaitedForSoLong) {
    open(strict(50ms));
    Polkit polkit(bus_);
    polkit.beSilent();
    EXPECT_EQ(codeOf(outcome(act, {"x"})), serviceRefusals::notAuthorized);
    loop_.waitUntil("the question is taken back", [&] { return polkit.was(takenBack); });
    EXPECT_FALSE(host_->isBusy());
}

TEST_F(ServiceTest, APeerThatLeavesTakesItsQuestionWithIt) {
    open(strict());
    Polkit polkit(bus_);
    polkit.beSilent();
    const Ending none = call(*link_, act, {"x"});
    loop_.waitUntil("polkit is asked", [&] { return polkit.was(asked); });
    link_.reset();
    loop_.waitUntil("it is seen to leave", [&] { return handler_.gone.size() == 1; });
    loop_.waitUntil("the question is taken back", [&] { return polkit.was(takenBack); });
    EXPECT_FALSE(host_->isBusy());
    EXPECT_TRUE(handler_.done.empty());
}

TEST_F(ServiceTest, APeerThatLeavesInTheMiddleIsNotAnswered) {
    open({});
    const Ending none = call(*link_, hang, {});
    loop_.waitUntil("it hangs", [&] { return !handler_.hanging.empty(); });
    link_.reset();
    loop_.waitUntil("it is seen to leave", [&] { return handler_.gone.size() == 1; });
    EXPECT_TRUE(host_->isBusy()) << "its work goes on";
    handler_.hanging.front()(ServiceValues{});
    handler_.hanging.front()(ServiceValues{}); // a second answer does nothing
    loop_.waitUntil("the work has ended", [&] { return !host_->isBusy(); });
    EXPECT_EQ(handler_.gone.size(), 2u) << "it is said again: the work may have begun more";
    host_.reset();
    handler_.hanging.front()(ServiceValues{}); // nor does one to a host that is gone
}

TEST_F(ServiceTest, WhatHangsKeepsNobodyWaitingUpToSoManyCalls) {
    ServiceRules rules = strict();
    rules.mostCalls = 40;
    open(rules);
    Polkit polkit(bus_);
    polkit.beSilent();
    const Ending unanswered = call(*link_, act, {"x"}), hanging = call(*link_, hang, {});
    const auto other = openServiceLink(identity);
    std::vector<Ending> endings;
    for (int i = 0; i < 200; ++i) {
        endings.push_back(call(i % 2 == 0 ? *link_ : *other, echo, sample));
        if (i % 20 != 19)
            continue;
        for (Ending& each : std::exchange(endings, {}))
            EXPECT_EQ(codeOf(outcome(std::move(each))), "done");
    }
    std::vector<Ending> waiting;
    for (int i = 0; i < 38; ++i)
        waiting.push_back(call(*other, hang, {}));
    loop_.waitUntil("all hang", [&] { return handler_.hanging.size() == 39; });
    EXPECT_EQ(codeOf(outcome(hang, {})), serviceRefusals::tooManyCalls);
}

TEST_F(ServiceTest, ALinkTellsWhenTheServiceOrTheBusGoes) {
    EXPECT_EQ(codeOf(outcome(echo, sample)), "lost") << "there is no service yet";
    open({});
    Ending middle = call(*link_, hang, {});
    loop_.waitUntil("it hangs", [&] { return !handler_.hanging.empty(); });
    host_.reset();
    EXPECT_EQ(codeOf(outcome(std::move(middle))), "lost");
    open({});
    EXPECT_EQ(codeOf(outcome(echo, sample)), "done") << "the same link, the next service";

    middle = call(*link_, hang, {});
    loop_.waitUntil("it hangs", [&] { return handler_.hanging.size() == 2; });
    bus_.stop();
    EXPECT_EQ(codeOf(outcome(std::move(middle))), "lost");
    EXPECT_EQ(codeOf(outcome(echo, sample)), "lost");
    loop_.waitUntil("the host notices", [&] { return losses_ == 1; });
    EXPECT_THROW(openServiceLink(identity), std::runtime_error);
    EXPECT_THROW(open({}), std::runtime_error);
}

TEST_F(ServiceTest, ALinkMayGoInTheEndOfItsOwnCall) {
    open({});
    std::promise<void> ended;
    link_->call(echo, sample,
                {[&, link = std::make_shared<std::shared_ptr<ServiceLink>>(link_)](ServiceReply) {
                     link->reset();
                     ended.set_value();
                 },
                 [](std::string) {
                 }});
    link_.reset();
    auto end = ended.get_future();
    loop_.waitUntil("the call ends", [&] { return end.wait_for(0s) == std::future_status::ready; });
    loop_.waitUntil("the peer has left", [&] { return handler_.gone.size() == 1; });
}

TEST_F(ServiceTest, TheBusTellsTheUser) {
    open({});
    Polkit polkit(bus_);
    polkit.say(false);
    link_ = [] {
        const test::AsUser other;
        return openServiceLink(identity);
    }();
    EXPECT_EQ(codeOf(outcome(echo, sample)), "done");
    EXPECT_EQ(codeOf(outcome(act, {"x"})), serviceRefusals::notAuthorized);
    EXPECT_THAT(handler_.users, ElementsAre(::geteuid() == 0 ? test::AsUser::user : ::geteuid()));
    EXPECT_TRUE(polkit.was(asked));
}

TEST(CodeRequirement, ATeamIsAskedForWhenThereIsOne) {
    EXPECT_EQ(codeRequirement("com.varnholt.app", ""), R"(identifier "com.varnholt.app")");
    EXPECT_EQ(codeRequirement("com.varnholt.app", "AB12CD34EF"),
              R"(anchor apple generic and identifier "com.varnholt.app")"
              " and certificate 1[field.1.2.840.113635.100.6.2.6]"
              " and certificate leaf[field.1.2.840.113635.100.6.1.13]"
              R"( and certificate leaf[subject.OU] = "AB12CD34EF")");
}

} // namespace
} // namespace vh

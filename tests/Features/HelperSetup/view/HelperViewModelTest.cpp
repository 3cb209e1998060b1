#include "Features/HelperSetup/view/HelperViewModel.h"

#include "HelperKit/HelperClient.h"
#include "support/FakeRootService.h"
#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

using Status = HelperRegistrationStatus;
using vh::test::FakeRootService;

/// The page over a helper of build "2" on a bus of its own.
struct HelperDesk : Desk {
    FakeRootService service;
    std::shared_ptr<vh::test::FakeRegistration> registration = std::make_shared<vh::test::FakeRegistration>();
    helper::HelperClient client{{.openLink = [this] { return service.open(); },
                                 .registration = registration,
                                 .defaults = session.defaults(),
                                 .build = "2",
                                 .repairPause = std::chrono::milliseconds(0)}};
    HelperViewModel page{context, client};

    void pingIs(FakeRootService::Step step) { service.on("Ping", std::move(step)); }
    void act(void (HelperViewModel::*what)()) {
        (page.*what)();
        ASSERT_NE(page.act(), "");
        ASSERT_TRUE(waitFor([this] { return page.act().isEmpty(); }));
    }
};

const FakeRootService::Step answer =
    FakeRootService::reply(ServiceValues{std::string("varnholt-helper 2\x1b")});

TEST(HelperPage, ReadsNothingUntilItIsLookedAtAndThenSaysWhichStage) {
    HelperDesk desk;
    desk.pingIs(answer);
    EXPECT_EQ(desk.page.stage(), "");
    for (const auto& [status, stage] : {std::pair{Status::notRegistered, "notRegistered"},
                                        {Status::requiresApproval, "requiresApproval"},
                                        {Status::notFound, "notFound"},
                                        {Status::unknown, "unknown"}}) {
        desk.registration->now = status;
        desk.act(&HelperViewModel::look);
        EXPECT_EQ(desk.page.stage(), stage);
    }
    EXPECT_EQ(desk.service.opened(), 0);
    desk.registration->now = Status::enabled;
    desk.act(&HelperViewModel::look);
    EXPECT_EQ(desk.page.stage(), "working");
    EXPECT_EQ(desk.page.facts()[0].toMap()["value"], "varnholt-helper 2\\x1B");
}

TEST(HelperPage, SetsUpAndRemovesAndSaysWhatFailed) {
    HelperDesk desk;
    desk.pingIs(answer);
    desk.registration->now = Status::notRegistered;
    desk.registration->refusal = "It was not allowed.";
    desk.act(&HelperViewModel::setUp);
    EXPECT_EQ(desk.page.stage(), "notRegistered");
    EXPECT_EQ(desk.page.failure(), "It was not allowed.");
    desk.registration->refusal.clear();
    desk.act(&HelperViewModel::setUp);
    EXPECT_EQ(desk.page.stage(), "working");
    EXPECT_EQ(desk.page.failure(), "");
    EXPECT_EQ(column(desk.page.facts(), "value").back(), "2");
    desk.act(&HelperViewModel::remove);
    EXPECT_EQ(desk.page.stage(), "notRegistered");
}

TEST(HelperPage, ASilentHelperSaysWhyAndARepairBringsItBack) {
    HelperDesk desk;
    desk.pingIs(FakeRootService::lose());
    desk.pingIs(FakeRootService::lose());
    desk.pingIs(answer);
    desk.act(&HelperViewModel::look);
    EXPECT_EQ(desk.page.stage(), "silent");
    EXPECT_THAT(desk.page.silence().toStdString(), testing::HasSubstr("gone"));
    desk.act(&HelperViewModel::repair);
    EXPECT_EQ(desk.page.stage(), "working");
    EXPECT_EQ(desk.registration->added, 1);
}

TEST(HelperPage, AHelperOfAnOlderBuildIsToBeUpdated) {
    HelperDesk desk;
    desk.pingIs(answer);
    desk.registration->asks = true;
    desk.session.defaults().set("helper.registeredBuild", "1");
    desk.client.refreshRegistrationAfterUpdate(desk.session.texts());
    desk.act(&HelperViewModel::look);
    EXPECT_EQ(desk.page.stage(), "old");
    EXPECT_EQ(desk.registration->added, 0);
    desk.act(&HelperViewModel::setUp);
    EXPECT_EQ(desk.page.stage(), "working");
}

} // namespace
} // namespace vh::app::test

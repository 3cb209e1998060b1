#include "Automation/Automation.h"

#include "Automation/ScriptLibrary.h"
#include "Features/FollowUps/view/FollowUpsViewModel.h"
#include "Features/FollowUps/view/MailViewModel.h"
#include "Features/FollowUps/work/FollowUpsService.h"
#include "Features/FollowUps/work/RunFollowUps.h"
#include "Features/Scripts/view/ScriptsViewModel.h"
#include "Mail/MailSettings.h"
#include "app/AutomationLife.h"
#include "app/SingleInstance.h"
#include "support/view/Desk.h"

#include <future>

namespace vh::app::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct AutomationPages : testing::Test {
    Desk desk;
    AutomationLife life{desk.context};
};

using Scripts = AutomationPages;

TEST_F(Scripts, AreWrittenRenamedRunAndRemoved) {
    automation::ScriptLibrary& library = life.automation().scripts();
    ScriptsViewModel model(desk.context, life);
    model.create();
    model.setBody("echo one; echo two >&2; exit 3");
    EXPECT_FALSE(model.save()) << "without a name";
    EXPECT_NE(model.message(), "");
    model.setName("Count");
    model.run();
    ASSERT_TRUE(waitFor([&] { return !model.outcome().isEmpty(); }));
    EXPECT_EQ(model.outcome(), "failed");
    EXPECT_EQ(model.output(), "one\ntwo\n");
    EXPECT_EQ(library.script("Count")->body, model.body().toStdString());

    library.save("Other", "exit 0");
    model.setName("Other");
    EXPECT_FALSE(model.save()) << "another script's place is never taken";
    EXPECT_EQ(library.script("Other")->body, "exit 0");
    model.setName("Counted");
    ASSERT_TRUE(model.save());
    EXPECT_THAT(column(model.scripts(), "name"), ElementsAre("Counted", "Other"));
    model.remove();
    EXPECT_FALSE(model.isOpen());
    EXPECT_THAT(column(model.scripts(), "name"), ElementsAre("Other"));
}

TEST_F(Scripts, KeepWhatWasTypedAndRefuseWhatTheyCannotDo) {
    automation::ScriptLibrary& library = life.automation().scripts();
    library.save("A", "sleep 60");
    library.save("B", "# varnholt: system\nid\n");
    library.save("C", "\xff\xfe");
    ScriptsViewModel model(desk.context, life);
    model.open("A");
    model.setBody("sleep 90");
    model.open("B");
    model.run();
    EXPECT_FALSE(model.isRunning()) << "nothing acts as root by itself";
    EXPECT_NE(model.message(), "");
    model.open("C");
    EXPECT_EQ(model.current(), "B") << "bytes that are no text would be lost";
    model.open("A");
    EXPECT_EQ(model.body(), "sleep 90");
    EXPECT_EQ(library.script("A")->body, "sleep 60");
    model.revert();
    EXPECT_EQ(model.body(), "sleep 60");
    model.run();
    model.stop();
    ASSERT_TRUE(waitFor([&] { return !model.outcome().isEmpty(); }));
    EXPECT_EQ(model.outcome(), "cancelled");
}

TEST_F(AutomationPages, StoreMailSettingsFieldByField) {
    MailViewModel model(desk.context, life);
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"host", " mail.example.com ", true},
        {"port", "0", false},
        {"port", "65536", false},
        {"port", "x", false},
        {"security", "tls", true},
        {"sender", "nobody", false},
        {"sender", "a@example.com", true},
        {"senderName", "Anna B", true},
        {"user", "anna", true},
    };
    for (const auto& [field, value, isGood] : cases) {
        model.set(field, value);
        EXPECT_EQ(model.message().isEmpty(), isGood) << field << " " << value;
    }
    const auto stored = mail::MailSettings::load(desk.session.defaults());
    EXPECT_EQ(stored, (mail::MailSettings{.host = "mail.example.com",
                                          .port = 465,
                                          .security = mail::MailSecurity::tls,
                                          .user = "anna",
                                          .sender = "a@example.com",
                                          .senderName = "Anna B"}))
        << "with the port that is usual for TLS";
    EXPECT_TRUE(model.isReady());
    model.set("port", "2525");
    model.set("security", "starttls");
    EXPECT_EQ(model.port(), "2525") << "one that a person chose stays";
    model.sendTest("nobody");
    EXPECT_EQ(model.testOutcome(), "failed");
    model.set("host", "127.0.0.1");
    model.set("port", "1");
    model.set("user", "");
    model.sendTest("b@example.com");
    EXPECT_TRUE(model.isTesting());
    ASSERT_TRUE(waitFor([&] { return !model.isTesting() && !model.testOutcome().isEmpty(); }));
    EXPECT_EQ(model.testOutcome(), "failed");
    EXPECT_NE(model.testText(), "");
}

TEST_F(AutomationPages, KeepWishesForAToolAndOfferKnownAddresses) {
    FollowUpsViewModel model(desk.context, life);
    EXPECT_THAT(column(model.tools(), "id"), testing::Contains("system-junk"));
    EXPECT_NE(model.save("system-junk", "a@example.com, nobody", "pdf"), "");
    EXPECT_EQ(model.lineOf("system-junk"), "");
    EXPECT_EQ(model.save("system-junk", "a@example.com; b@example.com a@example.com", "csv"), "");
    const auto wishes =
        life.automation().service<automation::FollowUpsService>().followUps().wishes("system-junk");
    EXPECT_THAT(wishes.recipients, ElementsAre("a@example.com", "b@example.com"));
    EXPECT_EQ(model.lineOf("system-junk"), "Mail to 2 people · CSV table");
    EXPECT_EQ(model.wishes("system-junk")["recipients"], "a@example.com, b@example.com");
    EXPECT_TRUE(model.knownAddresses().contains("b@example.com"));
    EXPECT_EQ(model.save("system-junk", "", ""), "");
    EXPECT_TRUE(life.automation()
                    .service<automation::FollowUpsService>()
                    .followUps()
                    .wishes("system-junk")
                    .isEmpty());
}

TEST_F(AutomationPages, LetOneWindowServeAllStarts) {
    SingleInstance first;
    ASSERT_EQ(first.enter("", ""), SingleInstance::Way::ours);
    std::vector<std::pair<QString, QString>> asked;
    QObject::connect(&first, &SingleInstance::asked, &first,
                     [&](const QString& page, const QString& url) { asked.emplace_back(page, url); });
    const std::pair<const char*, const char*> starts[] = {{"", ""}, {"activity", "varnholt://flow/run?id=x"}};
    for (const auto& [page, url] : starts) {
        auto second = std::async(std::launch::async,
                                 [page = page, url = url] { return SingleInstance().enter(page, url); });
        ASSERT_TRUE(
            waitFor([&] { return second.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        EXPECT_EQ(second.get(), SingleInstance::Way::handedOn);
        EXPECT_EQ(asked.back(), (std::pair<QString, QString>{page, url}));
    }
    EXPECT_EQ(asked.size(), 2u);
}

} // namespace
} // namespace vh::app::test

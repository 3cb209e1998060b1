#include "Features/Optimize/view/OptimizeViewModel.h"

#include "Automation/Automation.h"
#include "app/AutomationLife.h"
#include "app/ShellViewModel.h"
#include "support/view/Desk.h"

namespace vh::app::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct Optimize : testing::Test {
    Desk desk;
    AutomationLife life{desk.context};
    OptimizeViewModel model{desk.context, life};

    void SetUp() override {
        junk::test::write(desk.home.cache("app/data"), std::string(3000, 'x'));
        keep({true, false, {}, false});
    }
    void keep(const automation::OptimizeProfile& profile) {
        QStringList tasks;
        for (const std::string& task : profile.maintenanceTasks)
            tasks << qtText(task);
        EXPECT_EQ(model.saveProfile({{"cleanStorage", profile.cleanStorage},
                                     {"cleanPrivacy", profile.cleanPrivacy},
                                     {"maintenanceTasks", tasks},
                                     {"smartHealth", profile.smartHealth}}),
                  "");
    }
    bool cacheIsThere() { return junk::test::fs::exists(desk.home.cache("app/data")); }
};

TEST_F(Optimize, LooksWithoutTouchingThenCleansAndPutsBack) {
    model.check();
    ASSERT_TRUE(waitFor([&] { return !model.isChecking() && !model.checks().isEmpty(); }));
    EXPECT_EQ(model.checks()[0].toMap()["removes"], true);
    EXPECT_TRUE(cacheIsThere());
    EXPECT_FALSE(model.hasResult());
    EXPECT_EQ(model.freedText(), "");

    std::vector<QString> seen;
    ShellViewModel shell(desk.context);
    QObject::connect(&life, &AutomationLife::changed, &life, [&] {
        if (shell.busy()["optimize"] == 1)
            seen.push_back(life.running().join(u','));
    });
    model.run();
    model.run();
    EXPECT_TRUE(model.isRunning());
    ASSERT_TRUE(waitFor([&] { return !model.isRunning() && model.canUndo(); }));
    EXPECT_THAT(seen, Contains("Optimize")) << "what closes the window can ask";
    EXPECT_THAT(life.running(), IsEmpty());
    EXPECT_FALSE(cacheIsThere());
    EXPECT_TRUE(model.hasResult());
    EXPECT_THAT(column(model.steps(), "outcome"), ElementsAre("success"));
    EXPECT_EQ(model.lastOutcome(), "success");
    EXPECT_EQ(model.line(), model.lastSummary());
    EXPECT_EQ(model.freedText(), "3 kB freed so far");
    EXPECT_EQ(desk.log().all().size(), 1U) << "the second press changes nothing";

    model.undo();
    ASSERT_TRUE(waitFor([&] { return !model.isUndoing() && !model.canUndo(); }));
    EXPECT_TRUE(cacheIsThere());
    EXPECT_EQ(desk.log().all().size(), 2U);
    EXPECT_TRUE(waitFor([&] { return model.freedText().isEmpty(); })) << "what is back is not freed";
    EXPECT_EQ(model.lastSummary(), model.line()) << "putting back is no run of the button";
    AutomationLife nextLife(desk.context);
    OptimizeViewModel next(desk.context, nextLife);
    EXPECT_TRUE(waitFor([&] { return next.lastSummary() == model.line(); })) << "nor is it later";
}

TEST_F(Optimize, ShowsAProfileAndStepsOfWhichOneFails) {
    keep({true, true, {"no-such-task", "clear-font-caches", "flush-dns"}, true});
    EXPECT_THAT(column(model.steps(), "title"), ElementsAre("Caches", "Privacy", "Maintenance", "Drives"));
    EXPECT_EQ(model.line(), "Clean caches · privacy · 2 maintenance tasks · drive check");
    EXPECT_THAT(column(model.profileSteps(), "isAvailable"), ElementsAre("true", "false", "true", "false"));

    keep({true, true, {}, false});
    EXPECT_EQ(model.profile()["cleanPrivacy"], true);
    EXPECT_EQ(OptimizeViewModel(desk.context, life).line(), "Clean caches · privacy") << "it is stored";
    model.run();
    ASSERT_TRUE(waitFor([&] { return model.hasResult(); }));
    EXPECT_THAT(column(model.steps(), "outcome"), ElementsAre("success", "failed"));
    EXPECT_NE(column(model.steps(), "text")[1], "");
    EXPECT_EQ(model.lastOutcome(), "warning");

    keep({false, false, {}, false});
    EXPECT_FALSE(model.hasResult()) << "the steps shown are the new profile’s";
    EXPECT_FALSE(model.hasSteps());
    EXPECT_EQ(model.line(), "Nothing is chosen yet. The gear says what it can do.");
}

TEST_F(Optimize, TellsOfRunsThatOthersDid) {
    struct Case {
        Outcome outcome;
        Date at;
        const char* text;
    };
    const Case cases[] = {
        {Outcome::success, noon - std::chrono::hours(96), "done on 18 Nov"},
        {Outcome::success, noon - std::chrono::hours(24), "done yesterday"},
        {Outcome::warning, noon - std::chrono::hours(13), "warnings yesterday"},
        {Outcome::failed, noon - std::chrono::hours(3), "failed today at 09:00"},
        {Outcome::cancelled, noon - std::chrono::hours(2), "stopped today at 10:00"},
    };
    for (const Case& each : cases) {
        RunRecord record = makeRun("optimize", "said", each.at);
        record.outcome = each.outcome;
        record.metrics[std::string(rawValue(RunMetric::freedBytes))] = 1'000'000;
        desk.log().record(record);
        EXPECT_TRUE(waitFor([&] { return model.lastText() == each.text; })) << model.lastText().toStdString();
    }
    EXPECT_EQ(model.freedText(), "5 MB freed so far");
    EXPECT_FALSE(model.canUndo());
    EXPECT_EQ(model.line(), "Clean caches");
}

} // namespace
} // namespace vh::app::test

#include "Tools/Maintenance/view/MaintenanceViewModel.h"

#include "app/AutomationLife.h"
#include "app/ShellViewModel.h"
#include "support/view/Desk.h"

#include <algorithm>

namespace vh::app::test {
namespace {

using helper::MaintenancePlan;
using testing::ElementsAre;
using testing::IsEmpty;

MaintenancePlan shell(const std::string& script) {
    return {.commands = {{"/bin/sh", {"-c", script}}}};
}

/// Machines whose tasks are scripts of ours: the one of the file types fails, search lacks its program, updates last.
MaintenancePlan planOf(MaintenanceTask task) {
    switch (task) {
    case MaintenanceTask::rebuildLaunchServices:
        return shell("echo damaged; exit 3");
    case MaintenanceTask::reindexSpotlight:
        return {.commands = {}, .blocker = MaintenancePlan::Blocker::programs, .missing = {"tracker3"}};
    case MaintenanceTask::downloadUpdates:
        return shell("exec sleep 60");
    default:
        return shell("echo first; echo second");
    }
}

struct Maintenance : testing::Test {
    Desk desk;
    ShellViewModel window{desk.context};
    AutomationLife life{desk.context};
    MaintenanceViewModel model{
        desk.context, helper::MaintenanceWork(nullptr, {helper::MaintenanceSystem::linux, planOf, true})};

    void runToItsEnd(const char* task) {
        model.run(task);
        EXPECT_EQ(model.running(), task);
        ASSERT_TRUE(waitFor([&] { return model.running().isEmpty(); }));
    }
    QVariantMap task(const QString& value) {
        for (const QVariant& each : model.tasks())
            if (each.toMap()["value"] == value)
                return each.toMap();
        return {};
    }
};

TEST_F(Maintenance, RunsATaskAndKeepsWhatItPrintedAndCameTo) {
    EXPECT_THAT(model.lastRun(), IsEmpty());
    model.run("clear-font-caches");
    EXPECT_EQ(model.runningTitle(), "Rebuild font caches");
    EXPECT_EQ(window.busy()["maintenance"], 1);
    EXPECT_THAT(life.running(), ElementsAre("Maintenance: Rebuild font caches"))
        << "what closes the window asks";
    model.run("reset-quicklook");
    EXPECT_EQ(model.running(), "clear-font-caches") << "one at a time";
    ASSERT_TRUE(waitFor([&] { return model.running().isEmpty(); }));
    EXPECT_EQ(model.log(), "first\nsecond");
    EXPECT_EQ(model.lastRun()["outcome"], "success");
    EXPECT_EQ(model.lastRun()["taskTitle"], "Rebuild font caches");
    EXPECT_EQ(model.results()["clear-font-caches"].toMap()["outcome"], "success");
    EXPECT_TRUE(waitFor([&] { return window.busy().isEmpty(); }));

    runToItsEnd("rebuild-launchservices");
    EXPECT_EQ(model.lastRun()["outcome"], "failed");
    EXPECT_TRUE(model.log().startsWith("damaged")) << model.log().toStdString();
    EXPECT_EQ(model.results().size(), 2);

    const auto runs = desk.log().all();
    ASSERT_EQ(runs.size(), 2U);
    EXPECT_EQ(runs[1].toolID, "maintenance");
    EXPECT_EQ(model.lastRun()["summary"], qtText(runs[1].summary));
    MaintenanceViewModel later(desk.context, helper::MaintenanceWork(nullptr));
    EXPECT_TRUE(waitFor([&] { return later.lastRun()["summary"] == qtText(runs[1].summary); }));
    EXPECT_EQ(later.lastRun()["taskTitle"], "") << "the log does not say which";
}

TEST_F(Maintenance, StopsATask) {
    model.run("download-updates");
    EXPECT_NE(model.elapsedText(), "");
    model.stop();
    EXPECT_TRUE(model.isStopping());
    ASSERT_TRUE(waitFor([&] { return model.running().isEmpty(); }));
    EXPECT_EQ(model.lastRun()["outcome"], "cancelled");
    EXPECT_EQ(model.elapsedText(), "");
    model.stop();
    model.run("no-such-task");
    EXPECT_EQ(model.running(), "");
}

TEST_F(Maintenance, SaysWhatAMachineLacksBeforeItStarts) {
    EXPECT_TRUE(task("reindex-spotlight")["missing"].toString().contains("tracker3"));
    EXPECT_EQ(task("reset-quicklook")["missing"], "");
    EXPECT_EQ(task("purge-memory")["requiresRoot"], true);
    EXPECT_EQ(task("restart-mac").size(), 0) << "only recipes name it";
    const QVariantList tasks = model.tasks();
    EXPECT_TRUE(std::ranges::is_sorted(tasks, {}, [](const QVariant& each) {
        return !each.toMap()["missing"].toString().isEmpty();
    })) << "what cannot be done stands last";
    EXPECT_NE(tasks.last().toMap()["missing"], "");

    MaintenanceViewModel other(
        desk.context, helper::MaintenanceWork(nullptr, {helper::MaintenanceSystem::linux, planOf, false}));
    for (auto* each : {&model, &other}) {
        each->refresh();
        EXPECT_TRUE(waitFor([&] { return !each->isLoading(); }));
    }
    EXPECT_TRUE(model.helperIsReady()) << "the administrator needs none";
    EXPECT_FALSE(other.helperIsReady());
}

} // namespace
} // namespace vh::app::test

#include "Tools/Maintenance/work/MaintenanceJob.h"

#include "Automation/ScheduledActions.h"
#include "HelperKit/HelperClient.h"
#include "support/FakeRootService.h"
#include "support/TestDependencies.h"

#include <gtest/gtest.h>

namespace vh::automation {
namespace {

using enum MaintenanceTask;
using helper::MaintenancePlan;
using helper::MaintenanceSystem;
using helper::MaintenanceWork;
using vh::test::TempDir;

MaintenancePlan shell(const std::string& script) {
    return {{{"/bin/sh", {"-c", script}}}, {}, {}};
}

TEST(MaintenanceJob, EndsAsOneRecordThatSaysWhatCameOfIt) {
    const TempDir folder;
    test::TestDependencies dependencies(folder.path());
    const Texts texts(Language::en);
    struct Case {
        MaintenanceTask task;
        bool isAdministrator;
        MaintenancePlan plan;
        Outcome outcome;
        std::string_view summary;
        std::string_view output;
    };
    const Case cases[]{
        {clearFontCaches, false, shell("echo scanned"), Outcome::success,
         "Rebuilt the font caches. Garbled or missing text is fixed once you reopen the affected "
         "applications.",
         "scanned"},
        {clearFontCaches, false, shell("echo bad; exit 3"), Outcome::failed,
         "The font caches were not rebuilt.", "bad\nexit 3"},
        {purgeMemory, true, shell("echo dropped"), Outcome::success,
         "The kernel dropped its caches of files. Free memory goes up straight away; files are read from the "
         "disk "
         "again until they are cached anew.",
         "dropped"},
        {purgeMemory, false, shell("echo dropped"), Outcome::failed,
         "The memory caches were not dropped. The privileged helper is not available on this computer.", ""},
        {downloadUpdates,
         true,
         {{}, MaintenancePlan::Blocker::programs, {"pkcon"}},
         Outcome::failed,
         "The updates were not downloaded. This needs pkcon, which this computer lacks.",
         ""},
    };
    for (const Case& each : cases) {
        const MaintenanceWork work(
            nullptr,
            {MaintenanceSystem::linux, [&](MaintenanceTask) { return each.plan; }, each.isAdministrator});
        const auto done = runMaintenance(each.task, work, dependencies.log, Trigger::manual, texts);
        EXPECT_EQ(done.record.summary, each.summary);
        EXPECT_EQ(done.record.outcome, each.outcome);
        EXPECT_EQ(done.output, each.output);
        EXPECT_EQ(dependencies.log.last("maintenance"), done.record);
    }
    EXPECT_EQ(dependencies.log.all().size(), std::size(cases));
}

TEST(MaintenanceJob, StoppedItSaysSo) {
    const TempDir folder;
    test::TestDependencies dependencies(folder.path());
    const MaintenanceWork work(
        nullptr, {MaintenanceSystem::linux, [](MaintenanceTask) { return shell("sleep 1000"); }, false});
    JobControl control;
    control.progress = [&](double, std::string_view) {
        control.cancel.cancel();
    };
    const auto done =
        runMaintenance(restartDock, work, dependencies.log, Trigger::manual, Texts(Language::en), control);
    EXPECT_EQ(done.record.outcome, Outcome::cancelled);
    EXPECT_EQ(done.record.summary, "Restart panel: stopped before it was done.");
}

TEST(MaintenanceJob, WhatTheHelperHasBegunIsSaidToGoOn) {
    const TempDir folder;
    test::TestDependencies dependencies(folder.path());
    vh::test::FakeRootService service;
    helper::HelperClient client({.openLink = [&] { return service.open(); },
                                 .registration = std::make_shared<vh::test::FakeRegistration>(),
                                 .defaults = dependencies.defaults,
                                 .build = "1"});
    dependencies.dependencies.maintenance = [&] {
        return MaintenanceWork(&client, dependencies.chores);
    };
    const std::string goesOn = "Drop memory caches: no longer waited for. What the privileged helper has "
                               "begun of it goes on to its end.";
    JobControl control;
    service.on("RunMaintenanceTask", [&](const auto&) { control.cancel.cancel(); });
    const auto done = runMaintenance(purgeMemory, dependencies.dependencies.maintenance(), dependencies.log,
                                     Trigger::manual, Texts(Language::en), control);
    EXPECT_EQ(done.record.outcome, Outcome::cancelled);
    EXPECT_EQ(done.record.summary, goesOn);

    control = {};
    const RunRecord record =
        ScheduledActions(dependencies.dependencies)
            .run(ScheduledAction::maintenance,
                 {.toolID = "maintenance", .payload = {{"tasks", "clear-font-caches,purge-memory"}}},
                 control);
    EXPECT_EQ(record.outcome, Outcome::cancelled);
    EXPECT_EQ(record.summary, "1 task done. " + goesOn);
    EXPECT_EQ(record.detail(RunDetail::errors), goesOn);
}

} // namespace
} // namespace vh::automation

#pragma once

#include "Automation/AutomationDependencies.h"
#include "Automation/Offer.h"
#include "Core/DatabaseLocation.h"
#include "Core/RunFiles.h"
#include "Core/RunJournal.h"
#include "Core/RunLog.h"
#include "Core/UserDefaults.h"
#include "support/FakeModule.h"
#include "support/TempDir.h"
#include "support/TurnedLoop.h"

namespace vh::automation::test {

using FakeModule = app::test::FakeModule;

/// Dependencies of their own below `root`, at noon UTC on Sunday, 1 March 2026, among which the tool "system-junk" is a made-up one.
struct TestDependencies {
    explicit TestDependencies(const std::string& root)
        : folders{.home = root + "/home", .data = root + "/data", .config = root + "/config"},
          defaults(root + "/defaults.json"), files(prepared(root)), log(defaults, files, loop.clock()),
          journals(root + "/open-runs", log, files) {}

    UserDefaults& prepared(const std::string& root) {
        defaults.set(DatabaseLocation::key, root + "/data");
        return defaults;
    }
    std::vector<std::string> summaries() const {
        std::vector<std::string> all;
        for (const RunRecord& record : log.all())
            all.push_back(record.summary);
        return all;
    }

    vh::test::TurnedLoop loop;
    const Folders folders;
    UserDefaults defaults;
    RunFiles files;
    RunLog log;
    RunJournals journals;
    std::shared_ptr<FakeModule> junk = std::make_shared<FakeModule>();
    /// Every task prints its name, those of root by way of a helper that is not there.
    helper::MaintenanceWork::Dependencies chores{
        helper::MaintenanceSystem::linux,
        [](MaintenanceTask task) {
            return helper::MaintenancePlan{{{"/bin/echo", {std::string(rawValue(task))}}}};
        },
        false};
    AutomationDependencies dependencies{
        loop,
        folders,
        defaults,
        {log, files, journals},
        [] { return Texts(Language::en); },
        [this](std::string_view id) { return id == "system-junk" ? junk : nullptr; },
        [this] { return helper::MaintenanceWork(nullptr, chores); },
        offers(),
        loop.clock(),
        LocalCalendar("UTC")};
};

} // namespace vh::automation::test

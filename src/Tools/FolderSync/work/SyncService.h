#pragma once

#include "Automation/Service.h"
#include "Tools/FolderSync/work/SyncRunner.h"

namespace vh::automation {

class Automation;

/// Syncs in this process, those of watched pairs included. Main thread.
class SyncService : public Service {
public:
    explicit SyncService(Automation& automation);

    SyncRunner& runner() { return runner_; }

    std::string_view name() const override { return "sync"; }
    void lead() override { runner_.start(); }
    void stop() override { runner_.stop(); }
    std::vector<RunningWork> running() const override;
    std::vector<std::string> troubles() override;

private:
    const AutomationDependencies& dependencies_;
    SyncRunner runner_;
    std::shared_ptr<void> observing_;
};

class ActionRun;
/// Syncs the pair of an action's payload, and shows it in `runner` where there is one. Blocks; any thread.
RunRecord syncPairOf(ActionRun& run, SyncRunner* runner);

} // namespace vh::automation

#pragma once

#include "Automation/FolderNews.h"
#include "Automation/Service.h"
#include "Features/Flows/FlowRun.h"
#include "Features/Flows/work/FlowTriggers.h"
#include "Features/Flows/work/NodesExecutor.h"
#include "Features/Flows/work/NodesRunner.h"

#include <map>
#include <memory>

namespace vh::automation {

class Automation;

/// Flows in this process: their store, what runs them, and, in the process that leads, what starts them. Main thread.
class FlowsService : public Service {
public:
    explicit FlowsService(Automation& automation);
    ~FlowsService() override;

    flows::NodesStore& store() { return *store_; }
    NodesRunner& runner() { return *runner_; }

    std::string_view name() const override { return "flows"; }
    void attach() override { runner_->recordInterrupted(); }
    void follow() override;
    void lead() override { triggers().start(); }
    void stop() override { runner_->stopAll(); }
    std::vector<RunningWork> running() const override;
    std::vector<std::string> troubles() override { return triggers().troubles(); }
    bool takesLink(const std::string& url) const override;
    std::optional<std::string> openLink(const std::string& url) override;
    void hear(const std::string& message) override;

private:
    FlowTriggers& triggers();
    void ended(const flows::Flow& flow, flows::FlowNodeOutcome outcome, const std::vector<Uuid>& chain);

    Automation& automation_;
    std::unique_ptr<flows::NodesStore> store_;
    FlowOutpost outpost_;
    std::unique_ptr<NodesExecutor> executor_;
    std::unique_ptr<NodesRunner> runner_;
    std::unique_ptr<FlowTriggers> triggers_;
    std::unique_ptr<FolderNews> news_;
    std::map<std::string, RunningWork> works_; ///< by their key
};

} // namespace vh::automation

#pragma once

#include "Core/Date.h"
#include "Core/ScheduleStore.h"
#include "Features/Flows/Flow.h"
#include "Features/Flows/FlowRun.h"
#include "Platform/FileLock.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh::flows {

/// A flow that a company sent.
struct CompanyFlow {
    Flow flow;
    std::string from; ///< who sent it
};

/// The flows and their last runs: a folder that the window, the command line and the server share. Each flow is a file
/// "<uuid>.json", its runs "<uuid>.runs.json", newest first. A flow that starts by schedule has a task in the schedule
/// store, with the flow's own identifier. Main thread.
class NodesStore {
public:
    static constexpr size_t keptRuns = 20;
    static constexpr int64_t largestFile = 16 << 20; ///< bytes; a larger one counts as damaged

    NodesStore(std::string folder, ScheduleStore& schedules, Clock clock = systemNow,
               LocalCalendar calendar = {});
    /// "<data>/Varnholt/flows".
    static std::string folderOfUser();

    /// Takes in what other processes wrote; files that did not change are not read again. Tells observers if that was
    /// anything. The first call of any function below does it.
    void load();

    const std::vector<Flow>& flows();               ///< own ones, last changed first
    const std::vector<CompanyFlow>& companyFlows(); ///< last changed first
    const Flow* flow(const Uuid& id);               ///< an own one
    const Flow* anyFlow(const Uuid& id);
    bool isCompany(const Uuid& id);
    std::vector<FlowRun> runs(const Uuid& id); ///< newest first
    std::optional<FlowRun> lastRun(const Uuid& id);
    std::optional<FlowRun> run(const Uuid& id, const Uuid& run);
    /// Files of flows that cannot be read; they are left alone.
    const std::vector<std::string>& damaged();

    /// Writes it, dated now, and its schedule. Gives what was stored. All throw SystemError and then change nothing.
    Flow save(Flow flow);
    /// The flow's files go to the Trash and its schedule goes. Does nothing for one that is not there.
    void remove(const Uuid& id);
    /// Nothing when there is no such flow. The copy has the name that is given.
    std::optional<Flow> duplicate(const Uuid& id, const std::string& name);
    /// `pattern(1)`, `pattern(2)`, … : the first that no flow has.
    std::string freeName(const std::function<std::string(int)>& pattern);
    void record(const FlowRun& run);
    void setCompany(const Flow& flow, const std::string& from);
    void removeCompany(const Uuid& id);

    /// Held while the flow runs, by one process; false when another one has it. Gone with the process.
    FileLock lockForRun(const Uuid& id) const;
    /// What is written down of a run while it goes on, so that a kill leaves what was done. For whoever holds its
    /// lock; throw SystemError, which is no reason to stop the run.
    void noteStarted(const FlowRun& run) const;
    void noteResult(const FlowRun& run, const Uuid& node, const FlowNodeResult& result) const;
    /// Runs that were killed, each given once: recorded with what they had done, their other nodes without result.
    std::vector<FlowRun> takeInterrupted();

    /// Called on the main thread after a change, until the token goes.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> observer);
    const std::string& folder() const { return folder_; }

private:
    struct State;
    std::string folder_;
    std::shared_ptr<State> state_;
};

} // namespace vh::flows

namespace vh {
template <>
inline constexpr auto describe<flows::CompanyFlow> = record(field("flow", &flows::CompanyFlow::flow),
                                                            field("from", &flows::CompanyFlow::from));
} // namespace vh

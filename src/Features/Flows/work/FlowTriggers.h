#pragma once

#include "Automation/AutomationDependencies.h"
#include "Features/Flows/work/NodesRunner.h"
#include "Platform/MountWatcher.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {
class Desktop;
}

namespace vh::automation {

/// Watches the machine and starts flows. Main thread.
class FlowTriggers {
public:
    /// `volumes` tells what is mounted now.
    FlowTriggers(const AutomationDependencies& dependencies, flows::NodesStore& store, NodesRunner& runner,
                 Desktop& desktop, std::function<std::vector<VolumeFacts>()> volumes = volumesNow);
    ~FlowTriggers();

    /// What is there by now fires nothing; flows that start at launch start. Only the one process that leads automation
    /// calls it; a second call does nothing.
    void start();
    /// Starts the flows that wait for the end of this one.
    void finished(const flows::Flow& flow, flows::FlowNodeOutcome outcome, const std::vector<Uuid>& chain);

    /// What cannot be watched, with the reason, for people.
    std::vector<std::string> troubles() const;
    /// Called when troubles() changed.
    void setOnTroubles(std::function<void()> f);

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The flow that a link names ("varnholt://flow/run?id=<uuid>"); nothing for any other text.
std::optional<Uuid> flowOfLink(std::string_view url);

} // namespace vh::automation

#pragma once

#include "Automation/AutomationDependencies.h"
#include "Core/Uuid.h"
#include "Features/Flows/FolderArrivals.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh::flows {
class NodesStore;
}

namespace vh::automation {

/// The folders in which flows wait for new files. Main thread.
class FlowFolders {
public:
    /// Gets the files that lie still and the flow that waits for them; true when they need not be told again.
    using Arrived = std::function<bool(const Uuid& flow, const std::vector<std::string>& files,
                                       const std::string& folder)>;

    FlowFolders(const AutomationDependencies& dependencies, flows::NodesStore& store, Arrived arrived);

    /// Begins to watch what flows want to be watched and can be, and ends what none wants any more. Looks again from
    /// time to time by itself. Not to be called from Arrived.
    void refresh();
    const std::vector<std::string>& troubles() const { return troubles_; }

private:
    struct Watched {
        std::unique_ptr<flows::FolderArrivals> arrivals;
        std::optional<FileIdentity> folder; ///< another one at the same path is another folder
    };
    std::map<Uuid, flows::OnNewFiles> wanted() const;
    void watch(const Uuid& flow, const flows::OnNewFiles& settings);

    const AutomationDependencies& dependencies_;
    flows::NodesStore& store_;
    const Arrived arrived_;
    std::map<Uuid, Watched> watched_;
    std::vector<std::string> troubles_;
    MainLoop::Token again_;
};

} // namespace vh::automation

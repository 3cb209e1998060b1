#pragma once

#include "Core/Message.h"
#include "HelperKit/MaintenanceRunner.h"
#include "HelperKit/MaintenanceTable.h"
#include "Platform/ServiceRegistration.h"

#include <functional>
#include <optional>
#include <string>

namespace vh::helper {

class HelperClient;

/// How a task ended.
struct MaintenanceEnd {
    enum class Kind {
        done,
        failed,
        stopped,
        leftToHelper ///< nobody waits for it any more; what the helper has begun goes on there
    };
    Kind kind = Kind::failed;
    std::optional<Message> reason = {}; ///< of a failure; unset when the output says it
    std::string output = {};            ///< of its commands
};

/// Does tasks for a person: those that need root through the helper, all others in this process. A process that is the
/// administrator's own does all of them itself: the helper would give it no right that it lacks, and a machine without
/// a desktop need not have one. Blocks; any thread.
class MaintenanceWork {
public:
    struct Dependencies {
        MaintenanceSystem system;
        std::function<MaintenancePlan(MaintenanceTask)> planOf;
        bool isAdministrator;
    };
    static Dependencies ofThisMachine();

    /// `helper` may be nothing and outlives this.
    explicit MaintenanceWork(HelperClient* helper, Dependencies dependencies = ofThisMachine())
        : dependencies_(std::move(dependencies)), helper_(helper) {}

    MaintenanceSystem system() const { return dependencies_.system; }
    MaintenancePlan planOf(MaintenanceTask task) const { return dependencies_.planOf(task); }
    /// Whether a task waits for a helper that is not there or not switched on.
    bool lacksHelper(MaintenanceTask task) const;
    /// Whether that is all that keeps it from running.
    bool lacksOnlyHelper(MaintenanceTask task) const {
        return lacksHelper(task) && planOf(task).isPossible();
    }
    /// Why a task cannot run here and now: a program or the helper is missing. Empty when it can. Starts nothing.
    std::string blocker(MaintenanceTask task, const Texts& texts) const;
    std::optional<Message> blocker(MaintenanceTask task) const;
    /// Never throws. One that cannot run here and now fails and starts nothing.
    MaintenanceEnd run(MaintenanceTask task, const CancelToken& cancel = {}) const;

private:
    MaintenanceRunner::Result perform(MaintenanceTask task, const CancelToken& cancel) const;
    bool goesToHelper(MaintenanceTask task) const;
    HelperRegistrationStatus helperStatus() const;

    Dependencies dependencies_;
    HelperClient* helper_;
};

} // namespace vh::helper

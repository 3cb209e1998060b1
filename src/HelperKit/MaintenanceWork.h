#pragma once

#include "HelperKit/MaintenanceRunner.h"
#include "HelperKit/MaintenanceTable.h"
#include "Platform/ServiceRegistration.h"

#include <functional>
#include <string>

namespace vh {
class Texts;
}

namespace vh::helper {

class HelperClient;

/// Does tasks for a person: those that need root through the helper, all others in this process. A process that is the
/// administrator's own does all of them itself: the helper would give it no right that it lacks, and a machine without
/// a desktop need not have one. Blocks; any thread.
class MaintenanceWork {
public:
    struct World {
        MaintenanceSystem system;
        std::function<MaintenancePlan(MaintenanceTask)> planOf;
        bool isAdministrator;
    };
    static World ofThisMachine();

    /// `helper` may be nothing and outlives this.
    explicit MaintenanceWork(HelperClient* helper, World world = ofThisMachine())
        : world_(std::move(world)), helper_(helper) {}

    MaintenanceSystem system() const { return world_.system; }
    MaintenancePlan planOf(MaintenanceTask task) const { return world_.planOf(task); }
    /// Whether a task waits for a helper that is not there or not switched on.
    bool lacksHelper(MaintenanceTask task) const;
    /// Why a task cannot run here and now: a program or the helper is missing. Empty when it can. Starts nothing.
    std::string hindrance(MaintenanceTask task, const Texts& texts) const;
    /// Throws HelperClientError and Cancelled. What the helper does goes on to its end when `cancel` is set.
    MaintenanceRunner::Result run(MaintenanceTask task, const CancelToken& cancel = {}) const;

private:
    bool goesToHelper(MaintenanceTask task) const;
    HelperRegistrationStatus helperStatus() const;

    World world_;
    HelperClient* helper_;
};

} // namespace vh::helper

#pragma once

#include "Core/Describe.h"
#include "Core/MaintenanceTask.h"
#include "Core/ScheduledTask.h"

#include <map>
#include <string>
#include <vector>

namespace vh {
class UserDefaults;

namespace automation {

/// What the one button does.
struct OptimizeProfile {
    bool cleanStorage = true;
    bool cleanPrivacy = false;
    std::vector<std::string> maintenanceTasks; ///< raw values
    bool smartHealth = false;

    /// One of its steps: a scheduled action and what it is handed.
    struct Step {
        ScheduledAction action;
        std::map<std::string, std::string> payload;
    };
    /// Always in the same order. Names of tasks that do not exist, or only recipes name, are dropped.
    std::vector<Step> steps() const;
    /// The tasks of the maintenance step.
    std::vector<MaintenanceTask> tasks() const;

    /// What is useful, safe and quick on this machine, needs no right and has an engine.
    static OptimizeProfile standard();
    /// The stored one, the standard one when there is none or it cannot be read.
    static OptimizeProfile load(const UserDefaults& defaults);
    /// Also stores whether it has tasks that need root.
    void save(UserDefaults& defaults) const;

    static constexpr const char* key = "optimize.profile";
    static constexpr const char* rootStepsKey = "optimize.root-steps";
};

} // namespace automation

template <>
inline constexpr auto describe<automation::OptimizeProfile> =
    record(field("cleanStorage", &automation::OptimizeProfile::cleanStorage),
           field("cleanPrivacy", &automation::OptimizeProfile::cleanPrivacy),
           field("maintenanceTasks", &automation::OptimizeProfile::maintenanceTasks),
           field("smartHealth", &automation::OptimizeProfile::smartHealth));

} // namespace vh

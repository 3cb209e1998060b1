#pragma once

#include "Core/CleanJob.h"
#include "Core/Date.h"
#include "Core/LocalCalendar.h"
#include "Core/Texts.h"
#include "HelperKit/MaintenanceWork.h"
#include "Platform/Folders.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace vh {
class MainLoop;
class SuiteModule;
class UserDefaults;
} // namespace vh

namespace vh::automation {

struct Offer;

/// What automation needs of the program that holds it. All of it outlives automation; the functions may be called from
/// any thread.
struct AutomationDependencies {
    MainLoop& loop;
    const Folders& folders;
    UserDefaults& defaults;
    RunStores runs;
    std::function<Texts()> texts; ///< in the language of now
    std::function<std::shared_ptr<SuiteModule>(std::string_view id)>
        module; ///< a new one; nothing without an engine
    std::function<helper::MaintenanceWork()> maintenance = [] {
        return helper::MaintenanceWork(nullptr);
    };                                         ///< the chores of the system, with its root helper
    std::span<const Offer* const> offers = {}; ///< of the features of the product
    Clock clock = systemNow;
    LocalCalendar calendar;
};

/// The file whose lock the process that leads holds.
std::string leadLockOf(const Folders& folders);

} // namespace vh::automation

#pragma once

#include "Core/CleanJob.h"
#include "Core/Date.h"
#include "Core/LocalCalendar.h"
#include "Core/Texts.h"
#include "Platform/Folders.h"

#include <functional>
#include <memory>
#include <string_view>

namespace vh {
class MainLoop;
class SuiteModule;
class UserDefaults;
} // namespace vh
namespace vh::helper {
class HelperClient;
}

namespace vh::automation {

/// What automation needs of the program that holds it. All of it outlives automation; the functions may be called from
/// any thread.
struct AutomationWorld {
    MainLoop& loop;
    const Folders& folders;
    UserDefaults& defaults;
    RunStores runs;
    std::function<Texts()> texts; ///< in the language of now
    std::function<std::shared_ptr<SuiteModule>(std::string_view id)>
        module; ///< a new one; nothing without an engine
    std::function<helper::HelperClient*()> helper = [] {
        return nullptr;
    }; ///< the root helper, nothing without one
    Clock clock = systemNow;
    LocalCalendar calendar;
};

} // namespace vh::automation

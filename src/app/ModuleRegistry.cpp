#include "app/ModuleRegistry.h"

#include "Core/ModuleCards.h"
#include "Core/SuiteModule.h"
#include "Platform/Folders.h"
#include "Tools/SystemJunk/SystemJunkModule.h"

#include <algorithm>

namespace vh::app {

namespace {

using MakeModule = std::shared_ptr<SuiteModule> (*)(const Folders&, const std::string& databaseFolder);

/// The tools that have an engine, a row each.
struct Engine {
    std::string_view id;
    MakeModule make; ///< nothing where what it does is not scanning and cleaning
};
constexpr Engine engines[] = {
    {"system-junk",
     [](const Folders& folders, const std::string& databaseFolder) -> std::shared_ptr<SuiteModule> {
         return std::make_shared<junk::SystemJunkModule>(
             junk::SystemJunkConfiguration::userDefaults(folders, databaseFolder));
     }},
    {"fast-copy", nullptr},
    {"maintenance", nullptr},
    {"sync", nullptr},
};

const Engine* engineOf(std::string_view id) {
    const auto found = std::ranges::find(engines, id, &Engine::id);
    return found == std::end(engines) ? nullptr : found;
}

} // namespace

ModuleRegistry::ModuleRegistry(const Folders& folders, const std::string& databaseFolder)
    : folders_(folders), databaseFolder_(databaseFolder) {
    for (const ModuleCard& card : moduleCards()) {
        const Engine* engine = engineOf(card.id);
        modules_.push_back(engine && engine->make ? engine->make(folders, databaseFolder)
                                                  : std::make_shared<SuiteModule>(card));
    }
}

ModuleRegistry::~ModuleRegistry() = default;

std::shared_ptr<SuiteModule> ModuleRegistry::module(std::string_view id) const {
    const auto found = std::ranges::find(modules_, id, [](const auto& module) { return module->id(); });
    return found == modules_.end() ? nullptr : *found;
}

std::shared_ptr<SuiteModule> ModuleRegistry::makeModule(std::string_view id) const {
    const Engine* engine = engineOf(id);
    return engine && engine->make ? engine->make(folders_, databaseFolder_) : nullptr;
}

bool ModuleRegistry::hasEngine(std::string_view id) const {
    return engineOf(id) != nullptr;
}

} // namespace vh::app

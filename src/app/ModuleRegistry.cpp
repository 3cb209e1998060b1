#include "app/ModuleRegistry.h"

#include "Automation/Offer.h"
#include "Core/ModuleCards.h"
#include "Core/SuiteModule.h"
#include "Platform/Folders.h"

#include <algorithm>

namespace vh::app {

namespace {

const automation::Offer* offerOf(std::string_view id) {
    const auto all = automation::offers();
    const auto found = std::ranges::find(all, id, &automation::Offer::tool);
    return found == all.end() ? nullptr : *found;
}

} // namespace

ModuleRegistry::ModuleRegistry(const Folders& folders, const std::string& databaseFolder)
    : folders_(folders), databaseFolder_(databaseFolder) {
    for (const ModuleCard& card : moduleCards()) {
        const automation::Offer* offer = offerOf(card.id);
        modules_.push_back(offer && offer->module ? offer->module(folders, databaseFolder)
                                                  : std::make_shared<SuiteModule>(card));
    }
}

ModuleRegistry::~ModuleRegistry() = default;

std::shared_ptr<SuiteModule> ModuleRegistry::module(std::string_view id) const {
    const auto found = std::ranges::find(modules_, id, [](const auto& module) { return module->id(); });
    return found == modules_.end() ? nullptr : *found;
}

std::shared_ptr<SuiteModule> ModuleRegistry::makeModule(std::string_view id) const {
    const automation::Offer* offer = offerOf(id);
    return offer && offer->module ? offer->module(folders_, databaseFolder_) : nullptr;
}

bool ModuleRegistry::hasEngine(std::string_view id) const {
    return offerOf(id) != nullptr;
}

} // namespace vh::app

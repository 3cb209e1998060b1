#pragma once

#include <span>
#include <string_view>

namespace vh {

/// What a module says of itself. Names and summaries are the module's own, not the catalogue's.
struct ModuleCard {
    std::string_view id;
    std::string_view displayName;
    std::string_view sfSymbolName; ///< a file in resources/icons
    std::string_view summary;
};

/// The cards of all modules, in the registry's order. Constant; may be read from any thread.
std::span<const ModuleCard> moduleCards();

/// The card with exactly this identifier, nullptr when there is none. Folded tools keep their own modules.
const ModuleCard* moduleCard(std::string_view id);

} // namespace vh

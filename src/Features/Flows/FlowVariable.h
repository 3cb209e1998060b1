#pragma once

#include "Core/Language.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vh::flows {

/// What a text of a flow may name in braces; its value comes with the run.
enum class FlowVariable { disk, diskName, files, folder, date, time };

std::string_view nameOf(FlowVariable variable, Language language);
/// By its name in any language, in any case.
std::optional<FlowVariable> variableNamed(std::string_view name);
/// "{disk}", "{disco}", "{disque}".
std::string tokenOf(FlowVariable variable, Language language);

/// A stretch of text: as it stands, or a variable with what was written for it.
struct FlowPiece {
    std::optional<FlowVariable> variable;
    std::string text;
    bool operator==(const FlowPiece&) const = default;
};
std::vector<FlowPiece> piecesOf(std::string_view text);
std::set<FlowVariable> variablesIn(std::string_view text);

} // namespace vh::flows

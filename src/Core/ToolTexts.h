#pragma once

#include "Core/Texts.h"
#include "Core/ToolCatalog.h"

#include <string>
#include <string_view>

namespace vh {

/// The catalogue's texts in the language of `texts`. Folded identifiers resolve; an unknown tool is its identifier,
/// with an empty summary.
std::string toolName(const Texts& texts, std::string_view id);
std::string toolSummary(const Texts& texts, std::string_view id);

std::string sectionTitle(const Texts& texts, ToolSection section);
std::string sectionSubtitle(const Texts& texts, ToolSection section);
std::string complexityLabel(const Texts& texts, ToolComplexity complexity);

} // namespace vh

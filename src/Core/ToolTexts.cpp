#include "Core/ToolTexts.h"

#include "Platform/Host.h"

#include <fmt/format.h>

namespace vh {

namespace {

/// English stands in the catalogue. What it says of macOS alone has a text of its own for Linux in all languages.
std::string translated(const Texts& texts, std::string_view english, const std::string& key) {
    if (const std::string here = key + ".linux"; !isMacOS() && texts.has(here))
        return texts.text(here);
    return texts.has(key) ? texts.text(key) : std::string(english);
}

} // namespace

std::string toolName(const Texts& texts, std::string_view id) {
    const ToolDescriptor* tool = ToolCatalog::tool(id);
    // What leaves records without being a tool of the catalogue has a name in every language's file.
    return translated(texts, tool ? tool->name : id, fmt::format("tool.{}.name", tool ? tool->id : id));
}

std::string toolSummary(const Texts& texts, std::string_view id) {
    const ToolDescriptor* tool = ToolCatalog::tool(id);
    return tool ? translated(texts, tool->summary, fmt::format("tool.{}.summary", tool->id)) : std::string();
}

std::string sectionTitle(const Texts& texts, ToolSection section) {
    return translated(texts, title(section), fmt::format("section.{}.title", rawValue(section)));
}

std::string sectionSubtitle(const Texts& texts, ToolSection section) {
    return translated(texts, subtitle(section), fmt::format("section.{}.subtitle", rawValue(section)));
}

std::string complexityLabel(const Texts& texts, ToolComplexity complexity) {
    return translated(texts, label(complexity), fmt::format("complexity.{}", rawValue(complexity)));
}

} // namespace vh

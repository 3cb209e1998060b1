#pragma once

#include "Core/Describe.h"
#include "Core/ToolSection.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vh {

/// How much a tool asks of who uses it, in rising order.
enum class ToolComplexity { low, lowMedium, medium, mediumHigh, high, veryHigh };

template <>
inline constexpr auto describe<ToolComplexity> = numberedEnumeration<ToolComplexity>({
    {ToolComplexity::low, 0},
    {ToolComplexity::lowMedium, 1},
    {ToolComplexity::medium, 2},
    {ToolComplexity::mediumHigh, 3},
    {ToolComplexity::high, 4},
    {ToolComplexity::veryHigh, 5},
});

/// The English text, such as "Low–Medium".
std::string_view label(ToolComplexity complexity);

/// Whether a module backs a tool.
struct AvailableTool {
    std::string_view moduleID;
    bool operator==(const AvailableTool&) const = default;
};
struct PlannedTool {
    bool operator==(const PlannedTool&) const = default;
};
using ToolStatus = std::variant<AvailableTool, PlannedTool>;

template <>
inline constexpr auto describe<AvailableTool> = record(field("moduleID", &AvailableTool::moduleID));
template <>
inline constexpr auto describe<ToolStatus> = taggedUnion(unionCase<AvailableTool>("available"),
                                                         unionCase<PlannedTool>("planned"));

/// One tool as the user sees it. The texts are English; Core/ToolTexts.h has those of every language.
struct ToolDescriptor {
    std::string_view id; ///< stable, lower case with hyphens: the toolID of runs, schedules and flows
    std::string_view name;
    std::string_view summary;
    std::string_view sfSymbolName; ///< a file in resources/icons
    ToolSection section = ToolSection::files;
    ToolComplexity complexity = ToolComplexity::low;
    ToolStatus status;

    bool isPrimary() const;
    bool isAvailable() const { return std::holds_alternative<AvailableTool>(status); }
    bool operator==(const ToolDescriptor&) const = default;
};

template <>
inline constexpr auto describe<ToolDescriptor> = record(field("id", &ToolDescriptor::id),
                                                        field("name", &ToolDescriptor::name),
                                                        field("summary", &ToolDescriptor::summary),
                                                        field("sfSymbolName", &ToolDescriptor::sfSymbolName),
                                                        field("section", &ToolDescriptor::section),
                                                        field("complexity", &ToolDescriptor::complexity),
                                                        field("status", &ToolDescriptor::status));

/// The tools of the program. All is constant and may be read from any thread; pointers stay valid for ever.
struct ToolCatalog {
    using IdentifierMap = std::span<const std::pair<std::string_view, std::string_view>>;

    static std::span<const ToolDescriptor> all();
    static std::vector<const ToolDescriptor*> tools(ToolSection section);

    /// Identifiers of the primary tools, in the order in which they appear.
    static std::span<const std::string_view> mainTools();
    static std::vector<const ToolDescriptor*> mainTools(ToolSection section);

    /// The identifier that took over a folded one, else `id` itself.
    static std::string_view resolve(std::string_view id);
    /// The row of an identifier, folded ones included; nullptr when there is none.
    static const ToolDescriptor* tool(std::string_view id);

    /// Former tools that are now a tab of another, and those that another replaced.
    static IdentifierMap mergedInto();
    static IdentifierMap replacedBy();
    /// The modules that share the page of tool `id`, a tab each, the tool itself first; empty for a page of one.
    static std::span<const std::string_view> modes(std::string_view id);

    static size_t availableCount();
};

} // namespace vh

#include "Core/ToolCatalog.h"

#include "Core/ToolCatalogTable.h"

#include <algorithm>
#include <array>

namespace vh {

namespace {

using Pair = std::pair<std::string_view, std::string_view>;

constexpr std::array<std::string_view, 26> primary{
    "fast-copy",        "sync",           "disk-catalog",    "batch-rename", "disk-space",
    "system-junk",      "smart-health",   "net-diagnostics", "nas",          "ftp",
    "local-servers",    "ssh-hosts",      "screens",         "serial",       "mac-info",
    "resource-monitor", "maintenance",    "app-uninstaller", "backups",      "data-carving",
    "convert-video",    "convert-images", "burn-in",         "pdf-to-word",  "word-to-pdf",
    "slides-to-pdf"};

constexpr std::array<Pair, 2> merged{{{"lan-scanner", "net-diagnostics"}, {"bandwidth", "net-diagnostics"}}};
constexpr std::array<Pair, 1> replaced{{{"duplicates", "disk-space"}}};
constexpr std::array<std::string_view, 3> networkModes{"net-diagnostics", "lan-scanner", "bandwidth"};

const ToolDescriptor* rowOf(std::string_view id) {
    const auto row = std::ranges::find(catalogueTable::rows, id, &ToolDescriptor::id);
    return row == catalogueTable::rows.end() ? nullptr : &*row;
}

} // namespace

std::string_view label(ToolComplexity complexity) {
    switch (complexity) {
    case ToolComplexity::low:
        return "Low";
    case ToolComplexity::lowMedium:
        return "Low–Medium";
    case ToolComplexity::medium:
        return "Medium";
    case ToolComplexity::mediumHigh:
        return "Medium–High";
    case ToolComplexity::high:
        return "High";
    case ToolComplexity::veryHigh:
        return "Very high";
    }
    return {};
}

bool ToolDescriptor::isPrimary() const {
    return std::ranges::find(primary, id) != primary.end();
}

std::span<const ToolDescriptor> ToolCatalog::all() {
    return catalogueTable::rows;
}

std::vector<const ToolDescriptor*> ToolCatalog::tools(ToolSection section) {
    std::vector<const ToolDescriptor*> found;
    for (const auto& row : catalogueTable::rows)
        if (row.section == section)
            found.push_back(&row);
    return found;
}

std::span<const std::string_view> ToolCatalog::mainTools() {
    return primary;
}

std::vector<const ToolDescriptor*> ToolCatalog::mainTools(ToolSection section) {
    std::vector<const ToolDescriptor*> found;
    for (auto id : primary)
        if (const auto* row = tool(id); row && row->section == section)
            found.push_back(row);
    return found;
}

std::string_view ToolCatalog::resolve(std::string_view id) {
    for (const auto& map : {mergedInto(), replacedBy()})
        for (const auto& [former, present] : map)
            if (former == id)
                return present;
    return id;
}

const ToolDescriptor* ToolCatalog::tool(std::string_view id) {
    return rowOf(resolve(id));
}

ToolCatalog::IdentifierMap ToolCatalog::mergedInto() {
    return merged;
}

ToolCatalog::IdentifierMap ToolCatalog::replacedBy() {
    return replaced;
}

std::span<const std::string_view> ToolCatalog::modes(std::string_view id) {
    if (id == networkModes.front())
        return networkModes;
    return {};
}

size_t ToolCatalog::availableCount() {
    const auto isAvailable = [](const ToolDescriptor& row) {
        return row.isAvailable();
    };
    return static_cast<size_t>(std::ranges::count_if(catalogueTable::rows, isAvailable));
}

} // namespace vh

#pragma once

#include "Core/Describe.h"

#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace vh {

/// Where a tool is filed, in the order of the window.
enum class ToolSection { files, disks, network, remote, servers, system, rescue, media, documents };

/// The two halves of the sidebar.
enum class AppMode { node, network };

template <>
inline constexpr auto describe<ToolSection> = enumeration<ToolSection>({
    {ToolSection::files, "files"},
    {ToolSection::disks, "disks"},
    {ToolSection::network, "network"},
    {ToolSection::remote, "remote"},
    {ToolSection::servers, "servers"},
    {ToolSection::system, "system"},
    {ToolSection::rescue, "rescue"},
    {ToolSection::media, "media"},
    {ToolSection::documents, "documents"},
});

template <>
inline constexpr auto describe<AppMode> = enumeration<AppMode>({{AppMode::node, "node"},
                                                                {AppMode::network, "network"}});

/// The English texts; Core/ToolTexts.h has those of every language.
std::string_view title(ToolSection section);
std::string_view subtitle(ToolSection section);
AppMode mode(ToolSection section);

/// Reads a stored section name, former names included. Nothing when unknown.
std::optional<ToolSection> legacyToolSection(std::string_view stored);

std::vector<ToolSection> sections(AppMode mode);
AppMode other(AppMode mode);
/// Identifiers of the tools that stand in the sidebar by themselves, in order.
std::span<const std::string_view> sidebarTools(AppMode mode);

} // namespace vh

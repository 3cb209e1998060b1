#include "Core/ToolSection.h"

#include <array>

namespace vh {

namespace {

struct SectionTexts {
    std::string_view title;
    std::string_view subtitle;
};

SectionTexts textsOf(ToolSection section) {
    switch (section) {
    case ToolSection::files:
        return {"Files & Transfers",
                "Copy and clone material, keep folders in step, and find, rename and lay out "
                "files — including drives that are unplugged."};
    case ToolSection::disks:
        return {"Disks", "What fills your disks, their health, images, partitions and foreign file systems."};
    case ToolSection::network:
        return {"Network", "Diagnose the connection, see what is on the network and what uses it."};
    case ToolSection::remote:
        return {"Remote Computers", "Terminals, screens and serial consoles of other computers."};
    case ToolSection::servers:
        return {"Network Files",
                "Shared folders, FTP and SFTP servers, and servers of your own for the network."};
    case ToolSection::system:
        return {"System", "Processes, startup items, maintenance, privacy, permissions and credentials."};
    case ToolSection::rescue:
        return {"Recovery", "Backups, bootable media, recovery and secure erase."};
    case ToolSection::media:
        return {"Media", "Convert pictures and video, with presets and the networks' own formats."};
    case ToolSection::documents:
        return {"Documents",
                "Word and PowerPoint to PDF, and PDF back to Word, with the apps this Mac already has."};
    }
    return {};
}

} // namespace

std::string_view title(ToolSection section) {
    return textsOf(section).title;
}

std::string_view subtitle(ToolSection section) {
    return textsOf(section).subtitle;
}

AppMode mode(ToolSection section) {
    switch (section) {
    case ToolSection::network:
    case ToolSection::remote:
    case ToolSection::servers:
        return AppMode::network;
    default:
        return AppMode::node;
    }
}

std::optional<ToolSection> legacyToolSection(std::string_view stored) {
    if (stored == "transfers")
        return ToolSection::files;
    return fromRaw<ToolSection>(stored);
}

std::vector<ToolSection> sections(AppMode wanted) {
    std::vector<ToolSection> found;
    for (ToolSection section : allCases<ToolSection>())
        if (mode(section) == wanted)
            found.push_back(section);
    return found;
}

AppMode other(AppMode mode) {
    return mode == AppMode::node ? AppMode::network : AppMode::node;
}

std::span<const std::string_view> sidebarTools(AppMode mode) {
    static constexpr std::array<std::string_view, 7> network{
        "net-diagnostics", "ssh-hosts", "screens", "serial", "nas", "ftp", "local-servers"};
    if (mode == AppMode::network)
        return network;
    return {};
}

} // namespace vh

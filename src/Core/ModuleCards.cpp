#include "Core/ModuleCards.h"

#include "Core/ToolCatalogTable.h"

#include <algorithm>
#include <array>

namespace vh {

namespace {

/// Only called while compiling, where an unknown identifier is an error.
consteval const ToolDescriptor& catalogueRow(std::string_view id) {
    return *std::ranges::find(catalogueTable::rows, id, &ToolDescriptor::id);
}

consteval ModuleCard card(std::string_view id, std::string_view displayName, std::string_view summary) {
    return {id, displayName, catalogueRow(id).sfSymbolName, summary};
}

consteval ModuleCard namedInCatalogue(std::string_view id, std::string_view summary) {
    return card(id, catalogueRow(id).name, summary);
}

consteval ModuleCard fromCatalogue(std::string_view id) {
    return card(id, catalogueRow(id).name, catalogueRow(id).summary);
}

// clang-format off
constexpr std::array cards{
    card("system-junk", "System Junk",
        "Clean user caches, logs, and temporary files."),
    card("app-uninstaller", "App Uninstaller",
        "Remove apps and their residual files under a strict allowlist."),
    card("privacy-cleaner", "Privacy Cleaner",
        "Clear browser and chat artifacts. Safari may need Full Disk Access."),
    card("startup-items", "Startup Items",
        "Enable or disable LaunchAgents and LaunchDaemons that persist in the background."),
    card("resource-monitor", "Resource Monitor",
        "Live CPU, memory pressure, disk and per-process usage."),
    card("unlocker", "File Unlocker",
        "See which process holds a file, folder or volume open, and quit it."),
    card("folder-templates", "Folder Structures",
        "Design reusable folder and file templates and deploy them anywhere in one step."),
    card("maintenance", "Maintenance Scripts",
        "Flush DNS, rebuild Launch Services, reindex Spotlight and more — the built-in tools, one click."),
    card("permissions-audit", "Permissions & Privacy",
        "Audit which apps hold camera, microphone, Full Disk Access, Accessibility and other grants, and reset them."),
    card("net-diagnostics", "Network Diagnostics",
        "Ping, traceroute, DNS and WHOIS without the terminal."),
    card("vault", "Password Vault",
        "Generate strong passwords, keep secrets in the macOS Keychain, audit your SSH keys."),
    card("disk-space", "Space",
        "Treemap of what fills your disk. Reveal or trash the big items; nothing is deleted permanently."),
    card("disk-images", "Disk Images",
        "Create, mount, encrypt, convert and verify DMG, ISO/CDR, sparse and raw images."),
    card("batch-rename", "Batch Rename",
        "Rename many files with find/replace, regex, numbering and metadata tokens. Preview first, undo anytime."),
    card("disk-catalog", "Index",
        "Index external drives and search millions of files while they are unplugged."),
    ModuleCard{"duplicates", "Duplicates & Diff", "doc.on.doc.fill",
        "Find exact duplicates with staged hashing and compare two folder trees. Removal goes to the Trash."},
    ModuleCard{"lan-scanner", "LAN Scanner", "dot.radiowaves.left.and.right",
        "Discover devices on your local network, identify vendors and check common open ports."},
    card("fast-copy", "Copy & Clone",
        "Copy to several destinations at once from a single read, and verified clones of folders and whole disks."),
    ModuleCard{"bandwidth", "Bandwidth Monitor", "arrow.up.arrow.down.circle",
        "Live upload and download per application, from the kernel's per-process counters."},
    card("sync", "Folder Sync",
        "One-way mirror of a folder with a plan you approve first; optional live watching with FSEvents."),
    card("shredder", "Secure Shredder",
        "Overwrite files with DoD or Gutmann patterns before deleting. Irreversible."),
    card("data-carving", "Data Carving",
        "Recover photos, videos, PDFs and archives from a disk image by scanning raw bytes for file signatures."),
    card("smart-health", "S.M.A.R.T. Health",
        "Drive wear, spare blocks, temperature, power-on hours and media errors read directly from the controller."),
    card("partitions", "Partition Manager",
        "Disks, containers and volumes as a tree; mount, rename, add or erase with the startup disk locked out."),
    card("raid", "RAID Manager",
        "AppleRAID mirror, stripe and concatenated sets: status, members, spares, rebuild — startup disk excluded."),
    card("bootable-usb", "Bootable USB Creator",
        "macOS installer media via Apple's createinstallmedia, or raw ISO/IMG writes with read-back verification."),
    card("cross-fs", "NTFS · ext4 · Btrfs",
        "Detects Windows/Linux partitions by signature, mounts what macOS or an installed driver can, and says plainly what it cannot."),
    card("backups", "Backups & Rebuild",
        "Time Machine from the app: destination, start/stop, exclusions, schedule; plus a verified checklist to rebuild the Mac from a backup."),
    card("nas", "NAS Servers",
        "Register SMB and NFS servers, mount their folders with one click and keep them mounted."),
    namedInCatalogue("ftp", "FTP, FTPS and SFTP servers and the company disk."),
    card("mac-info", "Mac Info",
        "Everything about this Mac: model, chip, memory, macOS, security, displays, disks, battery, network and devices."),
    card("ssh-hosts", "SSH Hosts",
        "Register computers, connect with one click in a terminal with tabs, and manage SSH keys."),
    card("screens", "Screens",
        "See and control other Macs and VNC screens inside the app, or open them in Screen Sharing."),
    card("serial", "Serial",
        "A terminal on a serial port: switches, routers and boards through a USB cable."),
    card("local-servers", "Local Servers",
        "Share a folder over HTTP or TFTP with other computers and devices on the network."),
    card("convert-images", "Convert Images",
        "Change the format, size, quality and colour profile of many pictures at once, with the networks' sizes."),
    card("convert-video", "Transcode Video",
        "Change codec, container, size and frame rate of many videos in a queue: ProRes, H.264, HEVC, DNxHR, MXF and the networks' formats."),
    card("burn-in", "Titles & Marks",
        "Burn a logo, texts, the timecode, the file's name, the date or a watermark into many videos, as a preset."),
    card("slates-bars", "Slates, Black & Bars",
        "SMPTE bars with a 1 kHz tone, a slate with its fields and logo, and black: a clip of its own or before each video."),
    fromCatalogue("pdf-to-word"),
    fromCatalogue("word-to-pdf"),
    fromCatalogue("slides-to-pdf"),
};
// clang-format on

} // namespace

std::span<const ModuleCard> moduleCards() {
    return cards;
}

const ModuleCard* moduleCard(std::string_view id) {
    const auto found = std::ranges::find(cards, id, &ModuleCard::id);
    return found == cards.end() ? nullptr : &*found;
}

} // namespace vh

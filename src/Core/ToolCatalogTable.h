#pragma once

#include "Core/ToolCatalog.h"

#include <array>

namespace vh {

/// The catalogue's rows. Read them through ToolCatalog; only what must know them while compiling includes this.
namespace catalogueTable {

using enum ToolSection;
using enum ToolComplexity;

constexpr ToolDescriptor row(std::string_view id, std::string_view name, ToolSection section,
                             ToolComplexity complexity, std::string_view symbol, std::string_view summary) {
    return {id, name, summary, symbol, section, complexity, AvailableTool{id}};
}

// clang-format off
inline constexpr std::array rows{
    row("mac-info", "Mac Info", system, low, "info.circle",
        "Everything about this Mac: model, chip, memory, macOS, security, displays, disks, battery, network and devices."),
    row("resource-monitor", "Resource Monitor", system, low, "gauge.with.dots.needle.67percent",
        "Live CPU, memory pressure, boot disk and per-process usage; quit processes that are yours."),
    row("startup-items", "Startup", system, low, "power.circle",
        "Enable or disable LaunchAgents and LaunchDaemons that persist in the background."),
    row("vault", "Password Vault", system, lowMedium, "key",
        "Generate, store and audit passwords, SSH keys and secrets in the macOS Keychain."),
    row("maintenance", "Maintenance Scripts", system, medium, "wrench.and.screwdriver",
        "Flush DNS cache, rebuild Launch Services, reindex Spotlight — the built-in tools, one click."),
    row("privacy-cleaner", "Clear", system, medium, "hand.raised",
        "Browser and chat artifacts only. Safari data needs Full Disk Access."),
    row("permissions-audit", "Permissions & Privacy", system, medium, "lock.shield",
        "Audit and revoke camera, microphone, Full Disk Access and Accessibility grants (TCC)."),
    row("app-uninstaller", "Uninstall", system, high, "app.badge.checkmark",
        "Remove apps and every residual file — Containers, Application Support, caches, plists — under a strict allowlist."),
    row("disk-space", "Space", disks, medium, "wand.and.sparkles",
        "What fills a disk or folder, by folder or by kind of file, and a smart analysis of what can go: duplicates, renders, old exports, your own rules. Everything goes to the Trash."),
    row("disk-images", "Disk Images", disks, medium, "opticaldiscdrive",
        "Create, mount, encrypt (AES-256), convert and verify DMG, ISO/CDR, sparse and raw images."),
    row("system-junk", "Cache", disks, mediumHigh, "trash",
        "Clean user caches, logs and temporary files. Nothing is removed until you confirm, and it goes to the Trash by default."),
    row("smart-health", "S.M.A.R.T. Health", disks, high, "waveform.path.ecg",
        "Drive wear, reallocated sectors, temperature and power-on hours via IOKit ATA/NVMe commands."),
    row("cross-fs", "Disk Mount", disks, veryHigh, "externaldrive.badge.plus",
        "Detects NTFS/ext4/Btrfs partitions by signature and mounts what macOS or an installed driver supports — limits stated."),
    row("partitions", "Partition Manager", disks, veryHigh, "chart.pie",
        "Disks, APFS containers and volumes as a tree: mount, rename, add, erase — startup disk locked out."),
    row("raid", "RAID Manager", disks, veryHigh, "square.stack.3d.down.right",
        "AppleRAID mirror, stripe and concatenated sets: member status, spares, auto-rebuild, create and delete."),
    row("unlocker", "Compress", files, lowMedium, "doc.zipper",
        "Compress to ZIP, 7Z, TAR.XZ, Apple Archive or a disk image; extract RAR, ZIP, 7Z and more; encrypt files and disks; unlock what will not open."),
    row("folder-templates", "Folder Structures", files, lowMedium, "folder.badge.gearshape",
        "Design reusable folder and file templates and deploy them anywhere in one step."),
    row("disk-catalog", "Index", files, medium, "magnifyingglass.circle",
        "Index drives and folders, browse them with their sizes while they are unplugged, tag and describe files, and find repeated ones."),
    row("batch-rename", "Batch Rename", files, mediumHigh, "character.cursor.ibeam",
        "Regex and metadata-driven renaming (photo EXIF and dimensions, audio and video tags) with live preview and atomic undo."),
    row("fast-copy", "Copy & Clone", files, high, "arrow.triangle.branch",
        "Copy to several destinations from one read, with a queue, pause per destination and verified clones of folders and whole disks."),
    row("sync", "Sync", files, veryHigh, "arrow.triangle.2.circlepath",
        "FSEvents-driven differential sync that preserves xattrs, ACLs and Finder flags."),
    row("net-diagnostics", "Network", network, medium, "point.3.connected.trianglepath.dotted",
        "Ping, traceroute, DNS and WHOIS; the devices on the local network and their open ports; traffic per app."),
    row("nas", "Servers", servers, medium, "externaldrive.connected.to.line.below",
        "Register SMB and NFS servers, mount their folders with one click and keep them mounted."),
    row("local-servers", "Local Servers", servers, medium, "antenna.radiowaves.left.and.right",
        "Share a folder on the network over HTTP, or serve firmware over TFTP, for as long as it is needed."),
    row("serial", "Serial", remote, medium, "cable.connector",
        "The console of routers, switches and cameras through a USB-serial adapter, in a terminal."),
    row("ssh-hosts", "SSH Hosts", remote, mediumHigh, "terminal",
        "Register computers, connect with one click in a terminal with tabs, and manage SSH keys."),
    row("ftp", "FTP", servers, high, "server.rack",
        "FTP, FTPS and SFTP servers and the company disk: browse them and copy to this Mac or another of the company."),
    row("screens", "Screens", remote, high, "display.2",
        "See and control other Macs and VNC screens inside the app, or open them in Screen Sharing."),
    row("backups", "Backups & Rebuild", rescue, medium, "externaldrive.badge.timemachine",
        "Time Machine from the app — destination, start, exclusions, schedule — and a verified checklist to rebuild the Mac from a backup."),
    row("bootable-usb", "Boot", rescue, mediumHigh, "mediastick",
        "macOS installer media through Apple’s createinstallmedia, or raw ISO/IMG writes with read-back verification."),
    row("shredder", "Erase", rescue, high, "flame",
        "Overwrite blocks with DoD 5220.22-M or Gutmann patterns before unlinking."),
    row("data-carving", "Recover", rescue, veryHigh, "externaldrive.badge.checkmark",
        "Recover deleted files from raw bytes by header/footer signatures, ignoring a damaged file table."),
    row("convert-images", "Convert", media, medium, "photo.on.rectangle.angled",
        "Change the format, size, quality and colour profile of many pictures at once, with the networks' sizes."),
    row("slates-bars", "Generate", media, medium, "tool.generate",
        "SMPTE bars with a 1 kHz tone, a slate with its fields and logo, and black: a clip of its own or before each video."),
    row("convert-video", "Transcode", media, high, "film",
        "Change codec, container, size and frame rate of many videos in a queue: ProRes, H.264, HEVC, DNxHR, MXF and the networks' formats."),
    row("burn-in", "BurnIn", media, high, "captions.bubble",
        "Burn a logo, texts, the timecode, the file's name, the date or a watermark into many videos, as a preset."),
    row("word-to-pdf", "Word to PDF", documents, medium, "doc.richtext",
        "Word, RTF and Pages documents to PDF, many at once, with Pages, LibreOffice or macOS itself."),
    row("slides-to-pdf", "PowerPoint to PDF", documents, medium, "rectangle.on.rectangle",
        "PowerPoint and Keynote presentations to PDF, a page per slide, with Keynote or LibreOffice."),
    row("pdf-to-word", "PDF to Word", documents, mediumHigh, "doc.text",
        "The text of PDFs as Word documents you can edit, with its fonts and sizes."),
};
// clang-format on

} // namespace catalogueTable
} // namespace vh

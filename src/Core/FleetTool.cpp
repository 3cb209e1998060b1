#include "Core/FleetTool.h"

#include "Platform/Blank.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace vh {

namespace {

/// By the variant's alternatives, in their order.
constexpr std::array<std::string_view, std::variant_size_v<FleetTool>> identifiers{
    "optimize",       "system-junk",      "privacy-cleaner", "smart-health", "backups",
    "startup-items",  "resource-monitor", "mac-info",        "maintenance",  "sync",
    "disk-space",     "disk-space",       "app-uninstaller", "nas",          "folder-templates",
    "disk-catalog",   "net-diagnostics",  "fast-copy",       "batch-rename", "disk-catalog",
    "convert-images", "convert-video",    "burn-in",         "slates-bars",  "ftp"};

bool isFilled(std::string_view text) {
    return !isBlank(text);
}

bool isFilled(const std::vector<std::string>& texts) {
    return std::ranges::any_of(texts, [](const std::string& text) { return isFilled(text); });
}

/// The tools that turn files into others by a preset.
template <class Tool>
concept Converter = requires(const Tool& tool) {
    tool.presetJSON;
    tool.sources;
};

constexpr const char* moviesFolder = "~/Movies";

struct IsFilledIn {
    bool operator()(const MaintenanceTool& tool) const { return isFilled(tool.tasks); }
    bool operator()(const FolderSyncTool& tool) const {
        return isFilled(tool.source) && isFilled(tool.destination);
    }
    bool operator()(const DiskSpaceTool& tool) const { return isFilled(tool.root); }
    bool operator()(const DuplicatesTool& tool) const { return isFilled(tool.roots); }
    bool operator()(const UninstallAppTool& tool) const { return isFilled(tool.bundleID); }
    bool operator()(const MountShareTool& tool) const { return isFilled(tool.address); }
    bool operator()(const FolderStructureTool& tool) const {
        return !tool.templateJSON.empty() && isFilled(tool.destination);
    }
    bool operator()(const DiskCatalogTool& tool) const { return isFilled(tool.root); }
    bool operator()(const NetworkTool& tool) const { return isFilled(tool.probe) && isFilled(tool.host); }
    bool operator()(const CopyMaterialTool& tool) const {
        return isFilled(tool.sources) && isFilled(tool.destinations);
    }
    bool operator()(const RenameTool& tool) const {
        // A blank is worth looking for; what replaces it may be nothing.
        return isFilled(tool.folder) && !(tool.find.empty() && tool.prefix.empty() && tool.suffix.empty());
    }
    bool operator()(const FindFilesTool& tool) const { return isFilled(tool.query); }
    bool operator()(const SlatesBarsTool& tool) const { return !tool.presetJSON.empty(); }
    bool operator()(const Converter auto& tool) const {
        return !tool.presetJSON.empty() && isFilled(tool.sources);
    }
    bool operator()(const RemoteSyncTool& tool) const {
        return isFilled(tool.localPath) && isFilled(tool.mode);
    }
    template <class Tool>
    requires std::is_empty_v<Tool>
    bool operator()(const Tool&) const { return true; }
};

struct PathsOf {
    std::vector<ToolPath> paths;

    void reads(const std::string& path) { paths.push_back({path, PathUse::read}); }
    void writes(const std::string& path) { paths.push_back({path, PathUse::write}); }
    void reads(const std::vector<std::string>& all) {
        for (const std::string& path : all)
            reads(path);
    }
    void writes(const std::vector<std::string>& all) {
        for (const std::string& path : all)
            writes(path);
    }

    void operator()(const FolderSyncTool& tool) {
        reads(tool.source);
        writes(tool.destination);
    }
    void operator()(const DiskSpaceTool& tool) { reads(tool.root); }
    void operator()(const DiskCatalogTool& tool) { reads(tool.root); }
    void operator()(const DuplicatesTool& tool) { reads(tool.roots); }
    void operator()(const FolderStructureTool& tool) { writes(tool.destination); }
    void operator()(const RenameTool& tool) { writes(tool.folder); }
    void operator()(const CopyMaterialTool& tool) {
        reads(tool.sources);
        writes(tool.destinations);
    }
    void operator()(const SlatesBarsTool& tool) {
        if (tool.sources.empty()) // a clip of its own
            writes(tool.destination.empty() ? moviesFolder : tool.destination);
        else
            convert(tool);
    }
    void operator()(const Converter auto& tool) { convert(tool); }
    void operator()(const RemoteSyncTool& tool) {
        if (tool.mode == "upload")
            reads(tool.localPath);
        else
            writes(tool.localPath);
    }
    void operator()(const auto&) {} // the others have no path

    void convert(const Converter auto& tool) {
        reads(tool.sources);
        if (!tool.destination.empty())
            writes(tool.destination);
    }
};

struct TextsOf {
    std::vector<std::string> texts;

    void take(const std::string& text) { texts.push_back(text); }
    void take(const std::vector<std::string>& list) { texts.insert(texts.end(), list.begin(), list.end()); }
    /// Passwords, presets, numbers and switches.
    void take(const auto&) {}

    template <class Tool>
    void operator()(const Tool& tool) {
        if constexpr (DescribedRecord<Tool>)
            std::apply([&](const auto&... field) { (take(tool.*field.member), ...); }, describe<Tool>.fields);
    }
};

} // namespace

std::string_view toolID(const FleetTool& tool) {
    return identifiers[tool.index()];
}

bool isSchedulable(const FleetTool& tool) {
    return std::visit(
        []<class Tool>(const Tool&) {
            return std::is_same_v<Tool, OptimizeTool> || std::is_same_v<Tool, CleanStorageTool> ||
                   std::is_same_v<Tool, CleanPrivacyTool> || std::is_same_v<Tool, SmartHealthTool> ||
                   std::is_same_v<Tool, BackupTool> || std::is_same_v<Tool, MaintenanceTool> ||
                   std::is_same_v<Tool, FolderSyncTool>;
        },
        tool);
}

bool isFilledIn(const FleetTool& tool) {
    return std::visit(IsFilledIn{}, tool);
}

std::vector<std::string> textsOf(const FleetTool& tool) {
    TextsOf collected;
    std::visit([&](const auto& each) { collected(each); }, tool);
    return std::move(collected.texts);
}

std::vector<ToolPath> pathsOf(const FleetTool& tool) {
    PathsOf collected;
    std::visit([&](const auto& each) { collected(each); }, tool);
    return std::move(collected.paths);
}

} // namespace vh

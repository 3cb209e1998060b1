#pragma once

#include "Core/Base64.h"
#include "Core/Describe.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vh {

struct OptimizeTool {
    bool operator==(const OptimizeTool&) const = default;
};
struct CleanStorageTool {
    bool operator==(const CleanStorageTool&) const = default;
};
struct CleanPrivacyTool {
    bool operator==(const CleanPrivacyTool&) const = default;
};
struct SmartHealthTool {
    bool operator==(const SmartHealthTool&) const = default;
};
struct BackupTool {
    bool operator==(const BackupTool&) const = default;
};
struct StartupItemsTool {
    bool operator==(const StartupItemsTool&) const = default;
};
struct ProcessesTool {
    bool operator==(const ProcessesTool&) const = default;
};
struct MacInfoTool {
    bool operator==(const MacInfoTool&) const = default;
};
struct MaintenanceTool {
    std::vector<std::string> tasks;
    bool operator==(const MaintenanceTool&) const = default;
};
struct FolderSyncTool {
    std::string source;
    std::string destination;
    bool deleteExtraneous = false;
    bool operator==(const FolderSyncTool&) const = default;
};
struct DiskSpaceTool {
    std::string root;
    bool operator==(const DiskSpaceTool&) const = default;
};
struct DuplicatesTool {
    std::vector<std::string> roots;
    int64_t minimumBytes = 0;
    bool operator==(const DuplicatesTool&) const = default;
};
struct UninstallAppTool {
    std::string bundleID;
    bool operator==(const UninstallAppTool&) const = default;
};
struct MountShareTool {
    std::string address;
    std::string user;
    std::optional<std::string> password;
    bool keep = false;
    bool operator==(const MountShareTool&) const = default;
};
struct FolderStructureTool {
    Bytes templateJSON;
    std::string destination;
    bool operator==(const FolderStructureTool&) const = default;
};
struct DiskCatalogTool {
    std::string root;
    std::string name;
    bool operator==(const DiskCatalogTool&) const = default;
};
struct NetworkTool {
    std::string probe;
    std::string host;
    bool operator==(const NetworkTool&) const = default;
};
struct CopyMaterialTool {
    std::vector<std::string> sources;
    std::vector<std::string> destinations;
    bool verify = false;
    bool operator==(const CopyMaterialTool&) const = default;
};
struct RenameTool {
    std::string folder;
    std::string find;
    std::string replace;
    std::string prefix;
    std::string suffix;
    bool operator==(const RenameTool&) const = default;
};
struct FindFilesTool {
    std::string query;
    bool operator==(const FindFilesTool&) const = default;
};
struct ConvertImagesTool {
    Bytes presetJSON;
    std::vector<std::string> sources;
    std::string destination;
    bool operator==(const ConvertImagesTool&) const = default;
};
struct ConvertVideoTool {
    Bytes presetJSON;
    std::vector<std::string> sources;
    std::string destination;
    bool operator==(const ConvertVideoTool&) const = default;
};
struct BurnInTool {
    Bytes presetJSON;
    std::vector<std::string> sources;
    std::string destination;
    bool operator==(const BurnInTool&) const = default;
};
struct SlatesBarsTool {
    Bytes presetJSON;
    std::vector<std::string> sources;
    std::string destination;
    bool operator==(const SlatesBarsTool&) const = default;
};
struct RemoteSyncTool {
    std::optional<Bytes> server;
    std::optional<std::string> password;
    std::string remotePath;
    std::string localPath;
    std::string mode;
    bool operator==(const RemoteSyncTool&) const = default;
};

/// A tool with all it is told, as schedules, flows and other computers hold it.
using FleetTool =
    std::variant<OptimizeTool, CleanStorageTool, CleanPrivacyTool, SmartHealthTool, BackupTool,
                 StartupItemsTool, ProcessesTool, MacInfoTool, MaintenanceTool, FolderSyncTool, DiskSpaceTool,
                 DuplicatesTool, UninstallAppTool, MountShareTool, FolderStructureTool, DiskCatalogTool,
                 NetworkTool, CopyMaterialTool, RenameTool, FindFilesTool, ConvertImagesTool,
                 ConvertVideoTool, BurnInTool, SlatesBarsTool, RemoteSyncTool>;

/// The tool's identifier in the catalogue.
std::string_view toolID(const FleetTool& tool);
/// Whether it may run by a schedule: it needs nobody who watches.
bool isSchedulable(const FleetTool& tool);
/// Whether all that it cannot do without is there.
bool isFilledIn(const FleetTool& tool);
/// Every text of a person's in it, in the order of the fields; lists one by one. Passwords and presets are none.
std::vector<std::string> textsOf(const FleetTool& tool);

enum class PathUse { read, write };
struct ToolPath {
    std::string path;
    PathUse use = PathUse::read;
    bool operator==(const ToolPath&) const = default;
};
/// The paths that a run reads and writes.
std::vector<ToolPath> pathsOf(const FleetTool& tool);

template <>
inline constexpr auto describe<MaintenanceTool> = record(field("tasks", &MaintenanceTool::tasks));
template <>
inline constexpr auto describe<FolderSyncTool> = record(field("source", &FolderSyncTool::source),
                                                        field("destination", &FolderSyncTool::destination),
                                                        field("deleteExtraneous",
                                                              &FolderSyncTool::deleteExtraneous));
template <>
inline constexpr auto describe<DiskSpaceTool> = record(field("root", &DiskSpaceTool::root));
template <>
inline constexpr auto describe<DuplicatesTool> = record(field("roots", &DuplicatesTool::roots),
                                                        field("minimumBytes", &DuplicatesTool::minimumBytes));
template <>
inline constexpr auto describe<UninstallAppTool> = record(field("bundleID", &UninstallAppTool::bundleID));
template <>
inline constexpr auto describe<MountShareTool> = record(field("address", &MountShareTool::address),
                                                        field("user", &MountShareTool::user),
                                                        field("password", &MountShareTool::password),
                                                        field("keep", &MountShareTool::keep));
template <>
inline constexpr auto
    describe<FolderStructureTool> = record(field("templateJSON", &FolderStructureTool::templateJSON),
                                           field("destination", &FolderStructureTool::destination));
template <>
inline constexpr auto describe<DiskCatalogTool> = record(field("root", &DiskCatalogTool::root),
                                                         field("name", &DiskCatalogTool::name));
template <>
inline constexpr auto describe<NetworkTool> = record(field("probe", &NetworkTool::probe),
                                                     field("host", &NetworkTool::host));
template <>
inline constexpr auto describe<CopyMaterialTool> = record(field("sources", &CopyMaterialTool::sources),
                                                          field("destinations",
                                                                &CopyMaterialTool::destinations),
                                                          field("verify", &CopyMaterialTool::verify));
template <>
inline constexpr auto
    describe<RenameTool> = record(field("folder", &RenameTool::folder), field("find", &RenameTool::find),
                                  field("replace", &RenameTool::replace),
                                  field("prefix", &RenameTool::prefix), field("suffix", &RenameTool::suffix));
template <>
inline constexpr auto describe<FindFilesTool> = record(field("query", &FindFilesTool::query));
template <>
inline constexpr auto
    describe<ConvertImagesTool> = record(field("presetJSON", &ConvertImagesTool::presetJSON),
                                         field("sources", &ConvertImagesTool::sources),
                                         field("destination", &ConvertImagesTool::destination));
template <>
inline constexpr auto describe<ConvertVideoTool> = record(field("presetJSON", &ConvertVideoTool::presetJSON),
                                                          field("sources", &ConvertVideoTool::sources),
                                                          field("destination",
                                                                &ConvertVideoTool::destination));
template <>
inline constexpr auto describe<BurnInTool> = record(field("presetJSON", &BurnInTool::presetJSON),
                                                    field("sources", &BurnInTool::sources),
                                                    field("destination", &BurnInTool::destination));
template <>
inline constexpr auto describe<SlatesBarsTool> = record(field("presetJSON", &SlatesBarsTool::presetJSON),
                                                        field("sources", &SlatesBarsTool::sources),
                                                        field("destination", &SlatesBarsTool::destination));
template <>
inline constexpr auto describe<RemoteSyncTool> = record(field("server", &RemoteSyncTool::server),
                                                        field("password", &RemoteSyncTool::password),
                                                        field("remotePath", &RemoteSyncTool::remotePath),
                                                        field("localPath", &RemoteSyncTool::localPath),
                                                        field("mode", &RemoteSyncTool::mode));
template <>
inline constexpr auto describe<FleetTool> =
    taggedUnion(unionCase<OptimizeTool>("optimize"), unionCase<CleanStorageTool>("cleanStorage"),
                unionCase<CleanPrivacyTool>("cleanPrivacy"), unionCase<SmartHealthTool>("smartHealth"),
                unionCase<BackupTool>("backup"), unionCase<StartupItemsTool>("startupItems"),
                unionCase<ProcessesTool>("processes"), unionCase<MacInfoTool>("macInfo"),
                unionCase<MaintenanceTool>("maintenance"), unionCase<FolderSyncTool>("folderSync"),
                unionCase<DiskSpaceTool>("diskSpace"), unionCase<DuplicatesTool>("duplicates"),
                unionCase<UninstallAppTool>("uninstallApp"), unionCase<MountShareTool>("mountShare"),
                unionCase<FolderStructureTool>("folderStructure"), unionCase<DiskCatalogTool>("diskCatalog"),
                unionCase<NetworkTool>("network"), unionCase<CopyMaterialTool>("copyMaterial"),
                unionCase<RenameTool>("rename"), unionCase<FindFilesTool>("findFiles"),
                unionCase<ConvertImagesTool>("convertImages"), unionCase<ConvertVideoTool>("convertVideo"),
                unionCase<BurnInTool>("burnIn"), unionCase<SlatesBarsTool>("slatesBars"),
                unionCase<RemoteSyncTool>("remoteSync"));

} // namespace vh

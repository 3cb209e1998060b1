#include "Core/FleetTool.h"

#include "Core/Codec.h"
#include "Core/FleetFolder.h"
#include "Core/MailAddress.h"
#include "Core/ScheduledTask.h"
#include "Core/ToolCatalog.h"
#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace vh {
namespace {

/// Each case by its stored form, empty, and what is to be known of it then.
std::vector<FleetTool> emptyTools() {
    std::vector<FleetTool> tools;
    const auto make = [&]<size_t... I>(std::index_sequence<I...>) {
        (tools.emplace_back(std::in_place_index<I>), ...);
    };
    make(std::make_index_sequence<std::variant_size_v<FleetTool>>());
    return tools;
}

TEST(FleetTool, HasACatalogueToolAndAStoredFormForEachCase) {
    int schedulable = 0;
    for (const FleetTool& tool : emptyTools()) {
        const auto action = fromRaw<ScheduledAction>(toolID(tool));
        EXPECT_TRUE(ToolCatalog::tool(toolID(tool)) || action == ScheduledAction::optimize) << toolID(tool);
        EXPECT_EQ(isSchedulable(tool), action.has_value()) << toolID(tool);
        schedulable += isSchedulable(tool);
        EXPECT_EQ(decodeJson<FleetTool>(encodeJson(tool)), tool);
        const bool isBare =
            std::visit([](const auto& each) { return std::is_empty_v<std::decay_t<decltype(each)>>; }, tool);
        EXPECT_EQ(isFilledIn(tool), isBare) << toolID(tool);
    }
    EXPECT_EQ(schedulable, 7);
}

TEST(FleetTool, SaysWhatItTouchesAndWhatThePersonWrote) {
    const Bytes preset{std::byte('{'), std::byte('}')};
    struct Row {
        FleetTool tool;
        std::vector<ToolPath> paths;
        std::vector<std::string> texts;
    };
    const auto reads = [](const char* path) {
        return ToolPath{path, PathUse::read};
    };
    const auto writes = [](const char* path) {
        return ToolPath{path, PathUse::write};
    };
    const Row rows[] = {
        {OptimizeTool{}, {}, {}},
        {MaintenanceTool{{"flush-dns", "x"}}, {}, {"flush-dns", "x"}},
        {FolderSyncTool{"/a", "/b", true}, {reads("/a"), writes("/b")}, {"/a", "/b"}},
        {DiskCatalogTool{"/r", "n"}, {reads("/r")}, {"/r", "n"}},
        {DuplicatesTool{{"/a", "/b"}, 7}, {reads("/a"), reads("/b")}, {"/a", "/b"}},
        {MountShareTool{"smb://x/y", "ana", "secret", true}, {}, {"smb://x/y", "ana"}},
        {FolderStructureTool{preset, "/d"}, {writes("/d")}, {"/d"}},
        {RenameTool{"/f", " ", "_", "", ""}, {writes("/f")}, {"/f", " ", "_", "", ""}},
        {CopyMaterialTool{{"/a"}, {"/b", "/c"}, true},
         {reads("/a"), writes("/b"), writes("/c")},
         {"/a", "/b", "/c"}},
        {BurnInTool{preset, {"/a"}, ""}, {reads("/a")}, {"/a", ""}},
        {ConvertVideoTool{preset, {"/a"}, "/d"}, {reads("/a"), writes("/d")}, {"/a", "/d"}},
        {SlatesBarsTool{preset, {}, ""}, {writes("~/Movies")}, {""}},
        {SlatesBarsTool{preset, {"/a"}, ""}, {reads("/a")}, {"/a", ""}},
        {RemoteSyncTool{preset, "secret", "/r", "/l", "upload"}, {reads("/l")}, {"/r", "/l", "upload"}},
        {RemoteSyncTool{{}, {}, "/r", "/l", "mirror"}, {writes("/l")}, {"/r", "/l", "mirror"}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(pathsOf(row.tool), row.paths) << caseName(row.tool);
        EXPECT_EQ(textsOf(row.tool), row.texts) << caseName(row.tool);
        EXPECT_TRUE(isFilledIn(row.tool)) << caseName(row.tool);
    }
    EXPECT_FALSE(isFilledIn(FolderSyncTool{"/a", " \n", false}));
}

TEST(FleetFolder, FollowsThePersonsOwnSettings) {
    const test::TempDir dir;
    const Folders folders{.home = "/home/ana", .config = dir.path()};
    EXPECT_EQ(pathOf(FleetFolder::downloads, folders), "/home/ana/Downloads");
    writeFileAtomically(dir / "user-dirs.dirs",
                        "# made by hand\nXDG_DESKTOP_DIR=\"$HOME/Escritorio/\"\n"
                        "XDG_DOCUMENTS_DIR=\"/data/Mis \\\"docs\\\"\"\n"
                        "XDG_DOWNLOAD_DIR=\"relative\"\nXDG_PUBLICSHARE_DIR=\"$HOME/\"\n");
    EXPECT_EQ(pathOf(FleetFolder::desktop, folders), "/home/ana/Escritorio");
    EXPECT_EQ(pathOf(FleetFolder::documents, folders), "/data/Mis \"docs\"");
    EXPECT_EQ(pathOf(FleetFolder::downloads, folders), "/home/ana/Downloads");
    EXPECT_EQ(pathOf(FleetFolder::shared, folders), "/home/ana");
}

TEST(MailAddress, IsOneAddress) {
    for (const char* good : {"ana@example.org", "a.b+c@x-y.example", "ñandú@correo.españa", "root@localhost",
                             "o'neill@example.org"})
        EXPECT_TRUE(MailAddress::isValid(good)) << good;
    for (const std::string bad :
         {"", "@", "ana", "ana@", "@example.org", "a b@example.org", "Ana <ana@example.org>", ".a@x.org",
          "a.@x.org", "a..b@x.org", "a@x..org", "a@-x.org", "a@x.org.", "a@b@x.org", "a@x.org\r\nRCPT",
          "a@x_y.org", "a,b@x.org", "\xff@x.org", "a\u202e@x.org"})
        EXPECT_FALSE(MailAddress::isValid(bad)) << bad;
    EXPECT_FALSE(MailAddress::isValid(std::string(65, 'a') + "@x.org"));
    EXPECT_FALSE(MailAddress::isValid("a@" + std::string(64, 'x') + ".org"));
}

} // namespace
} // namespace vh

#include "Core/ToolCatalog.h"
#include "Core/ModuleCards.h"

#include <gmock/gmock.h>
#include <set>

namespace vh {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ToolCatalog, EveryRowIsWholeAndPointsAtAModule) {
    std::set<std::string_view> ids;
    for (const auto& row : ToolCatalog::all()) {
        EXPECT_TRUE(ids.insert(row.id).second) << row.id << " stands twice";
        EXPECT_FALSE(row.name.empty()) << row.id;
        EXPECT_TRUE(row.summary.ends_with('.')) << row.id;
        const auto* available = std::get_if<AvailableTool>(&row.status);
        ASSERT_TRUE(available) << row.id;
        EXPECT_EQ(available->moduleID, row.id);
        EXPECT_TRUE(moduleCard(available->moduleID)) << row.id;
    }
    EXPECT_EQ(ids.size(), 39u);
    EXPECT_EQ(ToolCatalog::availableCount(), 39u);
}

TEST(ToolCatalog, FoldedIdentifiersOpenTheToolThatTookThemOver) {
    ASSERT_TRUE(ToolCatalog::tool("lan-scanner"));
    EXPECT_EQ(ToolCatalog::tool("lan-scanner")->id, "net-diagnostics");
    EXPECT_EQ(ToolCatalog::tool("bandwidth")->id, "net-diagnostics");
    EXPECT_EQ(ToolCatalog::tool("duplicates")->id, "disk-space");
    EXPECT_EQ(ToolCatalog::tool("system-junk")->name, "Cache");
    EXPECT_FALSE(ToolCatalog::tool("no-such-tool"));
    EXPECT_FALSE(ToolCatalog::tool(""));
    for (const auto& map : {ToolCatalog::mergedInto(), ToolCatalog::replacedBy()})
        for (const auto& [former, present] : map) {
            EXPECT_EQ(ToolCatalog::resolve(present), present) << former << " leads to a folded tool";
            EXPECT_TRUE(moduleCard(former)) << former << " has lost its module";
        }
    EXPECT_THAT(ToolCatalog::modes("net-diagnostics"),
                ElementsAre("net-diagnostics", "lan-scanner", "bandwidth"));
    EXPECT_THAT(ToolCatalog::modes("lan-scanner"), IsEmpty());
}

TEST(ToolCatalog, MainToolsKeepTheirOwnOrder) {
    EXPECT_EQ(ToolCatalog::mainTools().size(), 26u);
    size_t inSections = 0;
    for (ToolSection section : allCases<ToolSection>())
        inSections += ToolCatalog::mainTools(section).size();
    EXPECT_EQ(inSections, 26u) << "an identifier resolves to no row";

    std::vector<std::string_view> files;
    for (const auto* row : ToolCatalog::mainTools(ToolSection::files))
        files.push_back(row->id);
    EXPECT_THAT(files, ElementsAre("fast-copy", "sync", "disk-catalog", "batch-rename"));
    EXPECT_TRUE(ToolCatalog::tool("sync")->isPrimary());
    EXPECT_FALSE(ToolCatalog::tool("shredder")->isPrimary());

    std::vector<std::string_view> servers;
    for (const auto* row : ToolCatalog::tools(ToolSection::servers))
        servers.push_back(row->id);
    EXPECT_THAT(servers, ElementsAre("nas", "local-servers", "ftp"));
}

TEST(ToolCatalog, TheModesShareOutTheSections) {
    using enum ToolSection;
    EXPECT_THAT(sections(AppMode::node), ElementsAre(files, disks, system, rescue, media, documents));
    EXPECT_THAT(sections(AppMode::network), ElementsAre(network, remote, servers));
    EXPECT_EQ(other(AppMode::node), AppMode::network);
    EXPECT_EQ(other(AppMode::network), AppMode::node);
    EXPECT_THAT(sidebarTools(AppMode::node), IsEmpty());
    ASSERT_EQ(sidebarTools(AppMode::network).size(), 7u);
    for (auto id : sidebarTools(AppMode::network))
        EXPECT_EQ(mode(ToolCatalog::tool(id)->section), AppMode::network) << id;
}

TEST(ToolCatalog, FormerSectionNamesAreStillRead) {
    EXPECT_EQ(legacyToolSection("transfers"), ToolSection::files);
    EXPECT_EQ(legacyToolSection("rescue"), ToolSection::rescue);
    EXPECT_EQ(legacyToolSection("nonsense"), std::nullopt);
    EXPECT_LT(ToolComplexity::mediumHigh, ToolComplexity::high);
    EXPECT_EQ(label(ToolComplexity::lowMedium), "Low\u2013Medium");
}

TEST(ModuleCards, AreTheRegistrysModules) {
    std::set<std::string_view> ids;
    for (const auto& card : moduleCards())
        EXPECT_TRUE(ids.insert(card.id).second) << card.id << " stands twice";
    EXPECT_EQ(ids.size(), 42u);
    EXPECT_EQ(moduleCard("system-junk")->displayName, "System Junk");
    EXPECT_EQ(moduleCard("lan-scanner")->displayName, "LAN Scanner");
    EXPECT_EQ(moduleCard("ftp")->displayName, "FTP");
    EXPECT_EQ(moduleCard("sync")->sfSymbolName, ToolCatalog::tool("sync")->sfSymbolName);
    EXPECT_EQ(moduleCard("pdf-to-word")->summary, ToolCatalog::tool("pdf-to-word")->summary);
    EXPECT_FALSE(moduleCard("no-such-tool"));
}

} // namespace
} // namespace vh

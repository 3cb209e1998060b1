#include "Core/ModuleCards.h"
#include "Core/ToolCatalog.h"
#include "Platform/Files.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace vh::house {
namespace {

void expectIcon(std::string_view symbol) {
    const auto picture = readFileIfPresent(fmt::format("{}/resources/icons/{}.svg", VH_SOURCE_DIR, symbol));
    ASSERT_TRUE(picture) << symbol << " has no picture";
    EXPECT_NE(picture->find("<svg"), std::string::npos) << symbol;
}

TEST(Icons, EveryToolAndModuleHasItsPicture) {
    for (const auto& tool : ToolCatalog::all())
        expectIcon(tool.sfSymbolName);
    for (const auto& card : moduleCards())
        expectIcon(card.sfSymbolName);
}

} // namespace
} // namespace vh::house

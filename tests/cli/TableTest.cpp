#include "cli/Table.h"

#include <gtest/gtest.h>

namespace vh::cli {
namespace {

TEST(Table, AlignsByWhatTheTerminalShows) {
    Table table({{"Size", Align::right}, {"Name"}, {"Note"}});
    table.add({"8 GB", "日本", "wide"});
    table.add({"612 MB", "cafe\u0301", "combining"});
    table.add({"1", "x"});
    EXPECT_EQ(table.text(0), "  Size  Name  Note\n"
                             "  8 GB  日本  wide\n"
                             "612 MB  cafe\u0301  combining\n"
                             "     1  x\n");
}

TEST(Table, GivesWayInTheMiddleOfWhatMayShrink) {
    Table table({{"Size", Align::right}, {"Path", Align::left, true}});
    table.add({"8 GB", "/home/ana/.cache/some/very/long/path/to/data.bin"});
    const std::string text = table.text(30);
    size_t start = 0;
    for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        EXPECT_LE(displayWidth(text.substr(start, end - start)), 30u);
    EXPECT_NE(text.find("data.bin"), std::string::npos) << text;
    EXPECT_NE(text.find("…"), std::string::npos) << text;
}

TEST(Table, ShortenNeverBreaksACharacter) {
    const std::string text = "añejo/日本語/ñandú";
    for (size_t columns = 0; columns <= displayWidth(text) + 1; ++columns) {
        const std::string cut = shorten(text, columns);
        EXPECT_LE(displayWidth(cut), columns);
        EXPECT_EQ(cut.find("\uFFFD"), std::string::npos);
    }
    EXPECT_EQ(shorten(text, displayWidth(text)), text);
}

} // namespace
} // namespace vh::cli

#include "Tools/SystemJunk/command/JunkSelection.h"

#include <gtest/gtest.h>

namespace vh::cli {
namespace {

ScanReport sample() {
    ScanReport report{"system-junk", {}, {}};
    for (const auto& [path, category] : {std::pair{"/home/a/.cache/big", "Caches"},
                                         {"/tmp/render", "Temporary"},
                                         {"/home/a/.cache/small", "Caches"}})
        report.items.push_back({Uuid::random(), path, 1, category, {}});
    return report;
}

std::vector<std::string> pathsOf(const JunkSelection& selection) {
    std::vector<std::string> paths;
    for (const ScanItem& item : selection.items)
        paths.push_back(item.path);
    return paths;
}

TEST(JunkSelection, TakesOnlyWhatTheScanShowed) {
    const ScanReport report = sample();
    const struct {
        JunkWords words;
        std::vector<std::string> chosen;
        std::vector<std::string> unmatched;
    } cases[] = {
        {{.all = true}, {"/home/a/.cache/big", "/tmp/render", "/home/a/.cache/small"}, {}},
        {{.categories = {"CACHES"}}, {"/home/a/.cache/big", "/home/a/.cache/small"}, {}},
        {{.categories = {"caches"}, .paths = {"/home/a/.cache/big"}},
         {"/home/a/.cache/big", "/home/a/.cache/small"},
         {}},
        {{.paths = {"small", "/home/a/.cache/../.cache/big/"}},
         {"/home/a/.cache/big", "/home/a/.cache/small"},
         {}},
        // A folder above an item, one inside it, and a name that only begins alike are not items.
        {{.paths = {"/home/a/.cache", "/home/a/.cache/big/inner", "/home/a/.cache/bi"}},
         {},
         {"/home/a/.cache", "/home/a/.cache/big/inner", "/home/a/.cache/bi"}},
        {{.categories = {"Documents"}}, {}, {"Documents"}},
        {{.paths = {""}}, {}, {""}},
    };
    for (const auto& each : cases) {
        const auto selection = selectJunk(report, each.words, "/home/a/.cache");
        EXPECT_EQ(pathsOf(selection), each.chosen);
        EXPECT_EQ(selection.unmatched, each.unmatched);
    }
}

TEST(JunkSelection, LeavesWhatWasInUseOfLateUnlessItIsNamed) {
    ScanReport report = sample();
    report.items[0].recency = Recency::recent;
    report.items[1].recency = Recency::recentInShared;
    const auto chosen = [&](const JunkWords& words) {
        return pathsOf(selectJunk(report, words, "/"));
    };
    EXPECT_EQ(chosen({.all = true}), std::vector<std::string>{"/home/a/.cache/small"});
    EXPECT_EQ(selectJunk(report, {.all = true}, "/").leftOut, 2u);
    EXPECT_EQ(chosen({.categories = {"caches"}}), std::vector<std::string>{"/home/a/.cache/small"});
    EXPECT_EQ(chosen({.paths = {"/tmp/render"}}), std::vector<std::string>{"/tmp/render"});
    EXPECT_EQ(chosen({.all = true, .recent = true}).size(), 3u);
}

} // namespace
} // namespace vh::cli

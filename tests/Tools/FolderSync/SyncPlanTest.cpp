#include "Core/Codec.h"
#include "Core/Texts.h"
#include "Tools/FolderSync/SyncEngine.h"

#include <gmock/gmock.h>

namespace vh::sync::test {

using namespace std::chrono_literals;
using testing::ElementsAreArray;

SyncEntry file(std::string path, int64_t size = 1, Date at = Date{}) {
    return {std::move(path), false, size, at, std::nullopt};
}
SyncEntry folder(std::string path) {
    return {std::move(path), true, 0, Date{}, std::nullopt};
}
SyncEntry link(std::string path, std::string target) {
    return {std::move(path), false, 0, distantPast, std::move(target)};
}

struct Case {
    const char* what;
    std::vector<SyncEntry> source, destination;
    std::vector<std::string> actions; ///< "kind path bytes"
    int64_t unchanged = 0;
};

const std::vector<Case> cases{
    {"all is new",
     {file("d/a", 3), folder("d"), link("l", "t")},
     {},
     {"mkdir d 0", "copy d/a 3", "copy l 0"}},
    {"dates close enough", {file("a", 1, Date{})}, {file("a", 1, Date{1900ms})}, {}, 1},
    {"dates too far apart", {file("a", 1, Date{})}, {file("a", 1, Date{2000ms})}, {"update a 1"}},
    {"the other way too, before 1970", {file("a", 1, Date{})}, {file("a", 1, Date{-2s})}, {"update a 1"}},
    {"as far apart as dates can be", {file("a", 1, distantPast)}, {file("a")}, {"update a 1"}},
    {"sizes differ", {file("a", 1)}, {file("a", 2)}, {"update a 1"}},
    {"a file where a folder is to be", {folder("a"), file("a/b")}, {file("a")}, {"copy a/b 1"}},
    {"a folder where a file is to be",
     {file("a", 5)},
     {folder("a"), file("a/b"), folder("a/c"), file("a/c/d")},
     {"copy a 5", "delete a/b 1", "delete a/c 0"}},
    {"links", {link("a", "x"), link("b", "x")}, {link("a", "x"), link("b", "y")}, {"update b 0"}, 1},
    {"link for file and file for link",
     {link("a", "x"), file("b", 4)},
     {file("a"), link("b", "x")},
     {"update a 0", "update b 4"}},
    {"a link where a folder is", {link("a", "x")}, {folder("a")}, {"copy a 0"}},
    {"a vanished folder is one action, whatever sorts into it",
     {file("b")},
     {folder("a"), file("a/x"), folder("a/y"), file("a/y/z"), file("a-b", 7), file("b")},
     {"delete a 0", "delete a-b 7"},
     1},
    {"plain order, deletes last",
     {folder("a"), file("a/b"), file("a-"), file("a0")},
     {file("0")},
     {"mkdir a 0", "copy a- 1", "copy a/b 1", "copy a0 1", "delete 0 1"}},
};

std::vector<std::string> linesOf(const SyncPlan& plan) {
    std::vector<std::string> lines;
    for (const SyncAction& each : plan.actions)
        lines.push_back(std::string(rawValue(each.kind)) + " " + each.relativePath + " " +
                        std::to_string(each.bytes));
    return lines;
}

TEST(SyncPlan, SaysWhatHasToHappen) {
    for (const Case& each : cases) {
        const SyncPlan plan = SyncEngine::plan(SyncIndex(each.source), SyncIndex(each.destination), true);
        EXPECT_THAT(linesOf(plan), ElementsAreArray(each.actions)) << each.what;
        EXPECT_EQ(plan.unchanged, each.unchanged) << each.what;
    }
}

TEST(SyncPlan, DeletesOnlyWhereToldAndNothingOfWhatItCouldNotRead) {
    const SyncIndex there({file("a"), folder("dark"), file("dark/b"), file("dark-c")});
    EXPECT_TRUE(SyncEngine::plan(SyncIndex(), there, false).isEmpty());
    SyncIndex source({folder("dark")});
    source.addUnreadable("dark", Message::literal("cannot be read"));
    const SyncPlan plan = SyncEngine::plan(source, there, true);
    EXPECT_THAT(linesOf(plan), testing::ElementsAre("delete a 1", "delete dark-c 1"));
    ASSERT_EQ(plan.unreadable.size(), 1u);
    EXPECT_EQ(worded(plan.unreadable.front(), Texts(Language::en)), "dark: cannot be read");
}

TEST(SyncPlan, LooksIntoFilesOnlyWhereTheirDatesDiffer) {
    const std::vector<SyncEntry> source{file("close"), file("same"), file("other"), file("longer", 2)};
    const std::vector<SyncEntry> there{file("close", 1, Date{1s}), file("same", 1, Date{1h}),
                                       file("other", 1, Date{1h}), file("longer", 1, Date{1h})};
    std::vector<std::string> asked;
    const SyncPlan plan =
        SyncEngine::plan(SyncIndex(source), SyncIndex(there), true, [&](std::string_view relative) {
            asked.emplace_back(relative);
            return relative == "same";
        });
    EXPECT_THAT(linesOf(plan), testing::ElementsAre("update longer 2", "update other 1"));
    EXPECT_EQ(plan.unchanged, 2);
    EXPECT_THAT(asked, testing::UnorderedElementsAre("same", "other"));
    EXPECT_EQ(plan.bytes(), 3);
    EXPECT_EQ(encodeJson(plan.actions[0]), R"({"bytes":2,"kind":"update","relativePath":"longer"})");
}

} // namespace vh::sync::test

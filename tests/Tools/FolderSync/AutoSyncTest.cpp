#include "Tools/FolderSync/AutoSyncGuard.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "Tools/FolderSync/WatchCheck.h"

#include "Platform/Files.h"
#include "support/ChildWork.h"
#include "support/TempDir.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace vh::sync::test {

namespace fs = std::filesystem;

SyncPlan planOf(int deletes, int updates, int copies, int64_t unchanged) {
    SyncPlan plan;
    plan.unchanged = unchanged;
    for (const auto& [kind, count] :
         {std::pair{SyncAction::Kind::remove, deletes}, std::pair{SyncAction::Kind::update, updates},
          std::pair{SyncAction::Kind::copy, copies}})
        plan.actions.insert(plan.actions.end(), static_cast<size_t>(count), {kind, "x", 1});
    return plan;
}

TEST(AutoSyncGuard, HoldsWhatWouldTakeHalfOfTheDestination) {
    EXPECT_FALSE(AutoSyncGuard::holds(planOf(19, 0, 0, 0)));
    EXPECT_TRUE(AutoSyncGuard::holds(planOf(20, 0, 0, 19)));
    EXPECT_TRUE(AutoSyncGuard::holds(planOf(20, 1, 1000, 19)));
    EXPECT_FALSE(AutoSyncGuard::holds(planOf(20, 2, 0, 19)));
    EXPECT_FALSE(AutoSyncGuard::holds(planOf(20, 0, 0, 21)));
}

TEST(WatchCheck, SaysWhatIsInTheWay) {
    const vh::test::TempDir folder;
    fs::permissions(folder.path(), fs::perms(0777));
    const auto outcome = vh::test::runUnprivileged([&] {
        SyncPair pair;
        pair.source = folder / "from";
        pair.destination = folder / "to";
        using Kind = WatchState::Kind;
        const auto expect = [&](std::optional<WatchState> state) {
            EXPECT_EQ(WatchCheck::blocker(pair), state);
        };
        expect(WatchState{Kind::waitingForSource, {}, 0});
        fs::create_directories(pair.source);
        fs::permissions(pair.source, fs::perms(0300));
        expect(WatchState::notPermitted(pair.source));
        fs::permissions(pair.source, fs::perms(0500));
        writeFileAtomically(pair.destination, "a file");
        expect(WatchState{Kind::waitingForDestination, {}, 0});
        fs::remove(pair.destination);
        fs::create_directories(pair.destination);
        fs::permissions(pair.destination, fs::perms(0500));
        expect(WatchState::notPermitted(pair.destination));
        fs::permissions(pair.destination, fs::perms(0700));
        expect(std::nullopt);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
}

TEST(SyncPairStore, KeepsPairsForSeveralProcesses) {
    const vh::test::TempDir folder;
    const std::string file = folder / "deep/pairs.json";
    SyncPairStore mine(file), theirs(file);
    EXPECT_TRUE(mine.load().empty());
    const SyncPair photos{Uuid::random(), "",    "/home/me/Photos/", "/media/not-\xff", true, false,
                          true,           Date{}};
    EXPECT_EQ(photos.title(), "Photos → not-\xff");
    mine.save({photos});
    theirs.change([](std::vector<SyncPair>& pairs) { pairs.push_back({Uuid::random(), "second"}); });
    mine.change([](std::vector<SyncPair>& pairs) { pairs.push_back({Uuid::random(), "third"}); });
    const auto stored = theirs.load();
    ASSERT_EQ(stored.size(), 3u);
    EXPECT_EQ(stored[0], photos);
    writeFileAtomically(file, R"([{"name": "without the rest"}])");
    EXPECT_TRUE(mine.load().empty());
    mine.save({photos});
    EXPECT_EQ(theirs.load(), std::vector{photos});
    EXPECT_EQ(readFile(file + ".damaged"), R"([{"name": "without the rest"}])");
}

} // namespace vh::sync::test

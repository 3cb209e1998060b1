#include "app/ActivityCenter.h"

#include "support/view/Desk.h"

#include <limits>
#include <thread>

namespace vh::app::test {
namespace {

using testing::IsEmpty;

TEST(ActivityCenter, ListsWhatRuns) {
    ActivityCenter centre([] { return noon; });
    const auto changes = countOf(&centre, &ActivityCenter::changed);
    EXPECT_EQ(centre.overallProgress(), std::nullopt);
    const QString copy = centre.begin("Copy", "fast-copy");
    const QString other = centre.begin("No tool");
    EXPECT_NE(copy, other);
    ASSERT_EQ(centre.running().size(), 2u);
    EXPECT_EQ(centre.running()[0].startedAt, noon);
    EXPECT_EQ(centre.busyTools(), QSet<QString>{"fast-copy"});
    EXPECT_EQ(centre.overallProgress(), std::nullopt);

    centre.setProgress(copy, 0.5);
    centre.report({.key = "view", .title = "Sync", .toolID = "sync", .progress = 7.0});
    EXPECT_EQ(centre.overallProgress(), 0.75) << "the mean of the known ones, none above 1";
    centre.report({.key = "view", .title = "Sync 2", .toolID = "sync"});
    ASSERT_EQ(centre.running().size(), 3u);
    EXPECT_EQ(centre.running()[2].title, "Sync 2");
    EXPECT_EQ(centre.overallProgress(), 0.5);
    centre.setProgress(copy, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(centre.overallProgress(), std::nullopt);

    const int before = *changes;
    centre.report({.key = "view", .active = false});
    centre.end(copy);
    centre.end(other);
    EXPECT_EQ(*changes, before + 3);
    centre.end(other);
    centre.setProgress("unknown", 0.5);
    centre.report({.key = "unknown", .active = false});
    EXPECT_EQ(*changes, before + 3) << "nothing of that is a change";
    EXPECT_THAT(centre.running(), IsEmpty());
}

TEST(ActivityCenter, AReleasedTokenEndsItsJobFromAnyThread) {
    auto centre = std::make_unique<ActivityCenter>();
    std::unique_ptr<JobToken> outlives;
    {
        JobToken moved = centre->beginToken("Scan", "system-junk");
        outlives = std::make_unique<JobToken>(centre->beginToken("Clean", "system-junk"));
        std::thread([token = std::move(moved)] {}).join();
        ASSERT_TRUE(waitFor([&] { return centre->running().size() == 1; }));
        EXPECT_EQ(centre->running()[0].id, outlives->key());
    }
    settle();
    EXPECT_EQ(centre->running().size(), 1u) << "a token that was moved from ends nothing";
    centre.reset();
    outlives.reset();
}

} // namespace
} // namespace vh::app::test

#include "app/RunLogWatch.h"

#include "support/view/Desk.h"

#include <thread>

namespace vh::app::test {
namespace {

/// As another process sees the same database; a real one would have to be forked off beside this one's threads.
struct Other {
    UserDefaults defaults{UserDefaults::fileOfUser()};
    RunFiles files{defaults};
    RunLog log{defaults, files};
};

struct Watch : testing::Test {
    Desk desk;
    RunLogWatch& watch = desk.context.runs();
    std::shared_ptr<int> changes = countOf(&watch, &RunLogWatch::changed);

    bool sees(size_t runs) {
        return waitFor(
            [&, before = *changes] { return *changes > before && desk.log().all().size() == runs; });
    }
};

TEST_F(Watch, TellsOfWhatThisProcessWritesOnTheMainThread) {
    const auto mainThread = std::this_thread::get_id();
    QObject::connect(&watch, &RunLogWatch::changed,
                     [&] { EXPECT_EQ(std::this_thread::get_id(), mainThread); });
    std::thread([&] { desk.log().record(makeRun("sync", "one")); }).join();
    EXPECT_TRUE(sees(1));
}

TEST_F(Watch, TellsOfWhatAnotherProcessWrites) {
    const auto append = [] {
        Other().log.record(makeRun("sync", "child"));
    };
    append();
    EXPECT_TRUE(sees(1)) << "the log's first line";
    append();
    EXPECT_TRUE(sees(2)) << "a line appended";
    Other().log.prune(noon + std::chrono::days(1), {});
    EXPECT_TRUE(sees(0)) << "the log rewritten";
    append();
    EXPECT_TRUE(sees(1)) << "a line appended to the new file";
}

TEST_F(Watch, FollowsAMoveByAnotherProcess) {
    desk.log().record(makeRun("sync", "one"));
    ASSERT_TRUE(sees(1));
    const std::string target = desk.home / "elsewhere";
    Other().log.relocate(target);
    ASSERT_TRUE(waitFor([&] { return desk.log().location() == target + "/runs.jsonl"; }));
    settle();
    Other().log.record(makeRun("sync", "two"));
    EXPECT_TRUE(sees(2));
}

} // namespace
} // namespace vh::app::test

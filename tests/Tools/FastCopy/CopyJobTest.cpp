#include "Tools/FastCopy/CopyJob.h"

#include "Tools/FastCopy/ProblemLines.h"

#include <gmock/gmock.h>

namespace vh::copy {
namespace {

using State = CopyJob::State;
using testing::ElementsAre;

CopyJob job(State state, std::vector<int64_t> done = {0, 0}, std::set<size_t> paused = {},
            std::set<size_t> removed = {}) {
    CopyJob made;
    made.state = state;
    made.destinations.resize(done.size(), "/to");
    made.bytes = 100;
    made.done = std::move(done);
    made.paused = std::move(paused);
    made.removed = std::move(removed);
    return made;
}

CopyJob unmeasured() {
    CopyJob made = job(State::running, {100, 100});
    made.bytes.reset();
    return made;
}

TEST(CopyJobTest, LetsTheNextOneStartOnceNobodyIsCopiedToAnyMore) {
    const CopyJob queued = job(State::queued);
    struct Case {
        const char* what;
        std::vector<CopyJob> jobs;
        std::optional<size_t> next, together;
    };
    const std::vector<Case> cases{
        {"nothing waits", {job(State::running)}, {}, {}},
        {"all is free", {queued, queued}, 0, 0},
        {"one runs", {job(State::running), queued}, {}, 1},
        {"one runs further down the list", {queued, job(State::running)}, {}, 0},
        {"one verifies, filled", {job(State::verifying, {100, 100}), queued}, {}, 1},
        {"all its places are paused", {job(State::running, {5, 5}, {0, 1}), queued}, 1, 1},
        {"one is paused, the other is filled", {job(State::running, {5, 100}, {0}), queued}, 1, 1},
        {"one is paused, the other is not filled", {job(State::running, {5, 99}, {0}), queued}, {}, 1},
        {"one is removed, the other paused", {job(State::running, {5, 5}, {1}, {0}), queued}, 1, 1},
        {"how much it is nobody knows", {unmeasured(), queued}, {}, 1},
        {"the others are over",
         {job(State::failed), job(State::stopped), job(State::finished), queued},
         3,
         3},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(nextToStart(each.jobs, false), each.next) << each.what;
        EXPECT_EQ(nextToStart(each.jobs, true), each.together) << each.what;
    }
}

TEST(CopyJobTest, FollowsItsCopyToTheEnd) {
    CopyJob it = job(State::running, {0, 0, 0}, {}, {1});
    EXPECT_THAT(it.visibleIndices(), ElementsAre(0U, 2U));
    CopyProgress progress;
    progress.bytesPerDestination = 200;
    progress.destinationBytes = {200, 150, 100};
    it.follow(progress);
    EXPECT_EQ(it.fraction(), 0.75) << "of those that were not removed";
    progress = {};
    progress.phase = CopyPhase::verifying;
    progress.bytesDone = 30;
    progress.bytesTotal = 300;
    it.follow(progress);
    EXPECT_EQ(it.state, State::verifying);
    EXPECT_EQ(it.fraction(), 0.1);
    EXPECT_EQ(it.bytes, 200) << "stays as it was while copying";
    for (const auto& [outcome, state] : {std::pair{CopyOutcome::completed, State::finished},
                                         {CopyOutcome::completedWithProblems, State::finished},
                                         {CopyOutcome::stopped, State::stopped},
                                         {CopyOutcome::failed, State::failed}}) {
        CopyReport report;
        report.outcome = outcome;
        it.end(report);
        EXPECT_EQ(it.state, state);
        EXPECT_EQ(it.endedWell, outcome == CopyOutcome::completed);
    }
}

TEST(CopyJobTest, KnowsAPlaceThatSourcesCannotGoTo) {
    struct Case {
        const char* destination;
        PlaceFault fault;
    };
    for (const auto& [destination, fault] : {Case{"/a/b", PlaceFault::insideSource},
                                             {"/a/b/deep/er", PlaceFault::insideSource},
                                             {"/a/bc", PlaceFault::none},
                                             {"/a", PlaceFault::holdsSource},
                                             {"/", PlaceFault::none},
                                             {"/c", PlaceFault::none}})
        EXPECT_EQ(faultOf(destination, {"/x/y", "/a/b"}), fault) << destination;
    EXPECT_EQ(faultOf("/any/where", {"/"}), PlaceFault::insideSource);
    EXPECT_EQ(faultOf("/", {"/top"}), PlaceFault::holdsSource);
}

TEST(CopyReport, TellsAProblemOnceWithThePlacesItConcerns) {
    CopyReport report;
    for (const char* path : {"/one", "/two", "/three", "/gone"}) {
        report.destinations.emplace_back();
        report.destinations.back().path = path;
        report.destinations.back().faults = {Message::literal("a: unreadable")};
    }
    for (const size_t full : {1, 2})
        report.destinations[full].faults.push_back(Message::literal("b: full"));
    report.destinations[1].faults.push_back(Message::literal("b: full")); // said twice by one place
    report.destinations[3].removed = true;
    EXPECT_EQ(test::problemsOf(report),
              (std::vector<std::string>{"a: unreadable", "b: full [/two, /three]"}));
}

} // namespace
} // namespace vh::copy

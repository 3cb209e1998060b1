#include "Core/RunJournal.h"

#include "Platform/FolderReader.h"
#include "RunLogFixture.h"
#include "support/ChildWork.h"
#include "support/FaultInjector.h"

#include <csignal>
#include <gmock/gmock.h>
#include <unistd.h>

namespace vh {
namespace {

using test::Database;
using testing::ElementsAre;
using testing::IsEmpty;

/// A database with its journals, as one process sees it.
struct Tracked : Database {
    explicit Tracked(const std::string& where)
        : Database(where), journals(where + "/open-runs", log, files) {}

    std::vector<RunRecord> recover() {
        return journals.recoverInterrupted(
            [](const std::string& title) { return title + " was interrupted"; });
    }
    size_t tracks() const {
        const auto folder = root + "/open-runs";
        return statusOf(folder) ? childNames(folder).size() : 0;
    }
    RunJournals journals;
};

/// Two of three steps done, then the end or death.
void clean(const std::string& root, bool dies) {
    Tracked base(root);
    auto journal =
        base.journals.open(base.log.begin("system-junk", Trigger::flow, {{RunDetail::flow, "F"}}), "Junk");
    for (const std::string path : {"/a\xff", "/b"}) {
        journal->doing({.path = path, .state = "removed"});
        journal->done({.path = path, .bytes = 5, .state = "removed"});
    }
    journal->doing({.path = "/c", .state = "removed"});
    if (dies)
        ::kill(::getpid(), SIGKILL);
    journal->done({.path = "/c", .state = "failed"});
    journal->finish(Outcome::warning, "Cleaned", {{RunMetric::filesRemoved, 2}});
}

std::vector<std::string> states(const std::vector<RunFileRow>& rows) {
    std::vector<std::string> all;
    for (const auto& row : rows)
        all.push_back(row.state);
    return all;
}

class RunJournalTest : public testing::Test {
protected:
    RunJournalTest() { RunLog::thisComputer(); } // asked once only, which would upset the count of file calls
    void killARun() {
        EXPECT_EQ(test::runInChild([&] { clean(dir.path(), true); }).status, 128 + SIGKILL);
    }
    test::TempDir dir;
};

TEST_F(RunJournalTest, AFinishedRunLeavesRecordAndListAndNoTrack) {
    clean(dir.path(), false);
    Tracked base(dir.path());
    ASSERT_EQ(base.log.all().size(), 1u);
    EXPECT_EQ(base.log.all()[0].outcome, Outcome::warning);
    EXPECT_THAT(states(base.files.rows(base.log.all()[0].id)), ElementsAre("removed", "removed", "failed"));
    EXPECT_EQ(base.tracks(), 0u);
    EXPECT_THAT(base.recover(), IsEmpty());
}

TEST_F(RunJournalTest, AKilledRunGetsItsRecordAndListOnce) {
    killARun();
    Tracked base(dir.path());
    EXPECT_THAT(base.log.all(), IsEmpty());
    EXPECT_EQ(base.recover().size(), 1u);
    const auto record = base.log.all().at(0);
    EXPECT_EQ(record.toolID, "system-junk");
    EXPECT_EQ(record.outcome, Outcome::failed);
    EXPECT_EQ(record.trigger, Trigger::flow);
    EXPECT_EQ(record.summary, "Junk was interrupted");
    EXPECT_EQ(record.detail(RunDetail::flow), "F");
    const auto rows = base.files.rows(record.id);
    EXPECT_THAT(states(rows), ElementsAre("removed", "removed", "unknown"));
    EXPECT_EQ(rows[0].path, "/a\xff");
    EXPECT_EQ(rows[2].path, "/c");
    EXPECT_THAT(base.recover(), IsEmpty());
    EXPECT_EQ(base.log.all().size(), 1u);
    EXPECT_EQ(base.tracks(), 0u);
}

TEST_F(RunJournalTest, ALivingRunIsLeftAlone) {
    Tracked base(dir.path());
    auto run = base.log.begin("system-junk", Trigger::manual);
    auto journal = base.journals.open(run, "Junk");
    journal->doing({.path = "/a", .state = "removed"});
    EXPECT_THAT(base.recover(), IsEmpty());
    EXPECT_EQ(test::runInChild([&] {
                  if (!Tracked(dir.path()).recover().empty())
                      throw std::runtime_error("took a living run for a dead one");
              }).status,
              0);
    journal->done({.path = "/a", .state = "removed"});
    EXPECT_EQ(journal->failure(), "");
    EXPECT_EQ(journal->finish(Outcome::success, "Done").id, run->id());
    EXPECT_EQ(journal->finish(Outcome::failed, "Again").summary, "Done");
    EXPECT_EQ(base.log.all().size(), 1u);
}

TEST_F(RunJournalTest, TwoWhoRecoverAtOnceWriteOneRecord) {
    for (int round = 0; round < 5; ++round)
        killARun();
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t)
        threads.emplace_back(
            [&] { EXPECT_EQ(test::runInChild([&] { Tracked(dir.path()).recover(); }).status, 0); });
    for (auto& thread : threads)
        thread.join();
    Tracked base(dir.path());
    EXPECT_EQ(base.log.all().size(), 5u);
    EXPECT_EQ(base.tracks(), 0u);
}

TEST_F(RunJournalTest, KilledAnywhereARunThatBeganIsAccountedFor) {
    const auto setUp = [&] {
        std::filesystem::remove_all(dir / "root");
        makeFolders(dir / "root");
        Database prepared(dir / "root");
    };
    std::set<Outcome> seen;
    test::forEachKill(
        setUp, [&] { clean(dir / "root", false); },
        [&](const test::FaultPoint&) {
            Tracked base(dir / "root");
            const bool began = base.tracks() > 0 || !base.log.all().empty();
            base.recover();
            EXPECT_EQ(base.tracks(), 0u);
            const auto records = base.log.all();
            ASSERT_LE(records.size(), 1u);
            for (const auto& record : records) {
                const bool finished = record.outcome == Outcome::warning;
                const auto rows = states(base.files.rows(record.id));
                EXPECT_TRUE(!finished || rows == (std::vector<std::string>{"removed", "removed", "failed"}));
                seen.insert(record.outcome);
            }
            EXPECT_TRUE(began || records.empty());
        });
    EXPECT_THAT(seen, ElementsAre(Outcome::warning, Outcome::failed));
}

TEST_F(RunJournalTest, NoFaultStopsTheRunOrLosesItsRecord) {
    std::unique_ptr<Tracked> base;
    const auto setUp = [&] {
        base.reset();
        std::filesystem::remove_all(dir / "root");
        makeFolders(dir / "root");
        base = std::make_unique<Tracked>(dir / "root");
    };
    const auto work = [&] {
        auto journal = base->journals.open(base->log.begin("system-junk", Trigger::manual), "Junk");
        journal->doing({.path = "/a", .state = "removed"});
        journal->done({.path = "/a", .state = "removed"});
        journal->finish(Outcome::success, "Cleaned");
    };
    test::forEachFault(setUp, work, [&](const test::FaultPoint& fault) {
        EXPECT_EQ(fault.thrown, std::nullopt);
        const bool isStored = !Database(dir / "root").log.all().empty();
        EXPECT_TRUE(isStored || base->tracks() == 1 || fault.kind == test::FaultKind::fullDisk)
            << "after a kill now, neither record nor track is left";
        base->log.record(test::makeRecord("next"));
        base->recover();
        const auto stored = Tracked(dir / "root").log.all();
        EXPECT_THAT(test::summaries(stored), ElementsAre("Cleaned", "next"));
        EXPECT_EQ(base->tracks(), 0u);
    });
}

TEST_F(RunJournalTest, ATrackWithoutAHeaderIsNoRun) {
    makeFolders(dir / "open-runs");
    writeFileAtomically(dir / "open-runs/empty.jsonl", "");
    writeFileAtomically(dir / "open-runs/odd.jsonl",
                        "{\"begin\":\n{\"row\":{\"path\":\"/a\",\"state\":\"x\"}}\n");
    Tracked base(dir.path());
    EXPECT_THAT(base.recover(), IsEmpty());
    EXPECT_EQ(base.tracks(), 0u);
}

} // namespace
} // namespace vh

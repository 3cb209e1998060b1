#include "Processes.h"
#include "RunLogFixture.h"

#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"
#include "support/FaultInjector.h"
#include "support/SmallDisk.h"

#include <gmock/gmock.h>
#include <set>

namespace vh {
namespace {

using test::Database;
using test::makeRecord;
using test::noon;
using test::Processes;
using test::summaries;
using testing::ElementsAre;

void appendMany(const std::string& root, const std::string& name, int count) {
    Database base(root);
    for (int i = 0; i < count; ++i)
        base.log.record(makeRecord(name + std::to_string(i)));
}

std::multiset<std::string> sorted(const std::vector<RunRecord>& records) {
    const auto texts = summaries(records);
    return {texts.begin(), texts.end()};
}

TEST(RunLogSharing, TwoProcessesAppendAndEachSeesAll) {
    test::TempDir dir;
    Database watching(dir.path());
    Processes others;
    for (const std::string name : {"a", "b"})
        others.start([&] { appendMany(dir.path(), name, 1000); });
    size_t seen = 0;
    while (seen < 2000) {
        const size_t now = watching.log.all().size();
        ASSERT_GE(now, seen) << "records vanished from sight";
        seen = now;
    }
    others.finish();
    std::multiset<std::string> expected;
    for (int i = 0; i < 1000; ++i)
        expected.insert({"a" + std::to_string(i), "b" + std::to_string(i)});
    EXPECT_EQ(sorted(watching.log.all()), expected);
    EXPECT_EQ(sorted(Database(dir.path()).log.all()), expected);
}

TEST(RunLogSharing, ThreadsOfOneProcessAppendAndRead) {
    test::TempDir dir;
    Database base(dir.path());
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&base, t] {
            for (int i = 0; i < 100; ++i) {
                base.log.record(makeRecord(fmt::format("{}-{}", t, i)));
                base.log.recent(3);
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(base.log.all().size(), 400u);
}

TEST(RunLogSharing, NothingIsLostOrOutOfSightWhileAnotherProcessPrunesAndMoves) {
    test::TempDir dir;
    Database watching(dir.path());
    watching.log.record(makeRecord("first"));
    Processes others;
    others.start([&] { appendMany(dir.path(), "a", 500); });
    others.start([&] { appendMany(dir.path(), "b", 500); });
    others.start([&] {
        Database base(dir.path());
        for (int i = 0; i < 40; ++i) {
            base.log.record(makeRecord("old", noon - std::chrono::hours(48)));
            base.log.relocate(dir / (i % 2 ? "data" : "elsewhere"));
            base.log.prune(noon - std::chrono::hours(24), std::nullopt);
        }
    });
    std::vector<RunRecord> seen;
    while ((seen = watching.log.all()).size() < 1001)
        ASSERT_TRUE(!seen.empty() && seen.front().summary == "first") << "a reader lost sight of the log";
    others.finish();
    EXPECT_EQ(Database(dir.path()).log.all().size(), 1001u);
}

/// A log of three with a list, the same for every fault.
class RunLogFaults : public testing::Test {
protected:
    RunLogFaults() {
        makeFolders(root);
        Database base(root, 3);
        for (const auto* summary : {"1", "2", "3"})
            base.log.record(makeRecord(summary, summary[0] == '1' ? noon - std::chrono::hours(48) : noon));
        base.files.save(base.log.all()[2].id, {{.path = "/x", .state = "copied"}});
        std::filesystem::rename(root, pristine);
    }
    void setUp() const {
        std::filesystem::remove_all(root);
        std::filesystem::copy(pristine, root, std::filesystem::copy_options::recursive);
    }
    std::vector<std::string> stored() const { return summaries(Database(root, 3).log.all()); }

    /// `work` under every fault and every kill; afterwards the log holds one of these.
    void expectAlways(const std::function<void()>& work,
                      const std::vector<std::vector<std::string>>& allowed) {
        const auto check = [&](const test::FaultPoint& fault) {
            if (fault.thrown) {
                EXPECT_EQ(Database(root).log.location(), root + "/data/runs.jsonl") << "moved, yet failed";
            }
            EXPECT_THAT(allowed, testing::Contains(stored()));
            Database base(root, 3);
            base.log.record(makeRecord("next"));
            EXPECT_EQ(stored().back(), "next");
            for (const auto& record : base.log.all()) {
                const size_t rows = base.files.rows(record.id).size();
                EXPECT_EQ(rows, record.summary == "3" ? 1u : 0u) << "its list is gone";
            }
        };
        test::forEachFault([&] { setUp(); }, work, check);
        test::forEachKill([&] { setUp(); }, work, check);
    }

    test::TempDir dir;
    std::string root = dir / "root";
    std::string pristine = dir / "pristine";
};

TEST_F(RunLogFaults, AppendingLosesNoEarlierLine) {
    const auto append = [&] {
        Database(root, 10).log.record(makeRecord("4"));
    };
    const auto check = [&](const test::FaultPoint&) {
        const auto now = summaries(Database(root, 10).log.all());
        EXPECT_THAT(now, testing::AnyOf(ElementsAre("1", "2", "3"), ElementsAre("1", "2", "3", "4")));
        Database(root, 10).log.record(makeRecord("5"));
        EXPECT_EQ(summaries(Database(root, 10).log.all()).back(), "5");
    };
    test::forEachFault([&] { setUp(); }, append, check);
    test::forEachKill([&] { setUp(); }, append, check);
}

TEST_F(RunLogFaults, ARecordThatCouldNotBeWrittenIsWrittenWithTheNext) {
    std::unique_ptr<Database> base;
    size_t waited = 0;
    test::forEachFault(
        [&] {
            setUp();
            base = std::make_unique<Database>(root, 10);
        },
        [&] { base->log.record(makeRecord("4")); },
        [&](const test::FaultPoint& fault) {
            EXPECT_EQ(fault.thrown, std::nullopt);
            EXPECT_THAT(summaries(base->log.all()), ElementsAre("1", "2", "3", "4"));
            waited += stored().back() != "4";
            base->log.record(makeRecord("5"));
            EXPECT_THAT(summaries(Database(root, 10).log.all()), ElementsAre("1", "2", "3", "4", "5"));
        });
    EXPECT_GT(waited, 0u);
}

TEST_F(RunLogFaults, RewritingLosesNothing) {
    expectAlways([&] { Database(root, 3).log.record(makeRecord("4")); }, {{"1", "2", "3"}, {"2", "3", "4"}});
}

TEST_F(RunLogFaults, PruningKeepsWhatIsYoung) {
    expectAlways([&] { Database(root, 3).log.prune(noon - std::chrono::hours(24), std::nullopt); },
                 {{"1", "2", "3"}, {"2", "3"}});
}

TEST_F(RunLogFaults, MovingIsWholeOrNotAtAll) {
    expectAlways([&] { Database(root, 3).log.relocate(root + "/new/place"); }, {{"1", "2", "3"}});
}

TEST_F(RunLogFaults, MovesToAnotherVolumeAndStaysWhenItIsFull) {
    const auto outcome = test::runInChild([&] {
        for (const size_t size : {16u << 10, 1u << 20}) {
            test::TmpfsMount disk(size);
            if (!disk)
                throw std::runtime_error("no right to mount a second volume");
            setUp();
            writeFileAtomically(disk / "runs.jsonl", "another log\n");
            Database base(root, 1000);
            for (int i = 0; i < 100; ++i)
                base.log.record(makeRecord("filler"));
            const auto before = base.log.all();
            const bool fits = size > 100'000;
            if (fits) {
                base.log.relocate(disk.path());
            } else {
                EXPECT_THROW(base.log.relocate(disk.path()), SystemError);
                EXPECT_EQ(readFile(disk / "runs.jsonl"), "another log\n");
                EXPECT_TRUE(childNames(disk / "run-files").empty()) << "a copy was left behind";
            }
            EXPECT_EQ(base.log.location(), (fits ? disk.path() : root + "/data") + "/runs.jsonl");
            EXPECT_EQ(Database(root, 1000).log.all(), before);
            EXPECT_EQ(base.files.usage().lists, 1u);
        }
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
}

TEST(RunLogOnAFullDisk, TheLogStaysReadableAndCatchesUp) {
    const auto outcome = test::onSmallDisk(32u << 10, [](const std::string& folder, test::SmallDisk) {
        Database base(folder);
        int count = 0;
        while (base.log.record(makeRecord(std::to_string(count))) == RunLog::Stored::inFile)
            ASSERT_LT(++count, 1000);
        EXPECT_EQ(base.log.all().size(), static_cast<size_t>(count) + 1);
        EXPECT_EQ(Database(folder).log.all().size(), static_cast<size_t>(count));
        EXPECT_EQ(readFile(folder + "/data/runs.jsonl").back(), '\n') << "a piece of a line stayed";
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
}

} // namespace
} // namespace vh

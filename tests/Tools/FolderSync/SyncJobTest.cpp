#include "Tools/FolderSync/work/SyncJob.h"

#include "Core/RunUndo.h"
#include "Platform/FileLock.h"
#include "Platform/Files.h"
#include "Tools/FolderSync/SyncEngine.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "Tools/FolderSync/work/SyncWatchFile.h"
#include "support/ChildWork.h"
#include "support/FileTree.h"
#include "support/LoopDisk.h"
#include "support/TestDependencies.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <thread>

namespace vh::automation::test {
namespace {

namespace fs = std::filesystem;
using End = SyncJobResult::End;
using sync::SyncEngine;
using sync::SyncPair;
using sync::SyncPairStore;
using testing::ElementsAre;
using testing::HasSubstr;

class SyncJobTest : public testing::Test {
protected:
    SyncJobTest() {
        ::setenv("XDG_DATA_HOME", dependencies.folders.data.c_str(), 1);
        pair.id = Uuid::random();
        pair.name = "Photos";
        pair.source = dir / "source";
        pair.destination = dir / "destination";
        pair.deleteExtraneous = true;
        store.save({pair});
        fs::create_directories(pair.source);
        fs::create_directories(pair.destination);
        request.pair = pair;
    }
    ~SyncJobTest() override { ::unsetenv("XDG_DATA_HOME"); }

    void write(const std::string& path, const std::string& text) const {
        fs::create_directories(fs::path(dir / path).parent_path());
        writeFileAtomically(dir / path, text);
    }
    void grow() const {
        write("source/new/file", "new");
        write("source/longer", "longer than it was");
        write("destination/longer", "short");
        write("destination/extra/one", "1");
    }
    void askUnattended(bool isScheduled) {
        request.isAttended = false;
        request.logsNothingToDo = isScheduled;
        request.trigger = Trigger::scheduled;
    }
    SyncJobResult run() const { return runSync(request, dependencies.dependencies, {cancel, {}}); }
    /// "state path", sorted.
    std::vector<std::string> listOf(const RunRecord& record) const {
        std::vector<std::string> list;
        for (const RunFileRow& row : dependencies.files.rows(record.id))
            list.push_back(row.state + " " + row.path.substr(pair.destination.size() + 1));
        std::ranges::sort(list);
        return list;
    }
    std::optional<Date> lastSync() { return store.load().front().lastSync; }

    vh::test::TempDir dir;
    TestDependencies dependencies{dir.path()};
    SyncPairStore store{SyncPairStore::fileIn(dependencies.folders)};
    SyncPair pair;
    SyncJobRequest request;
    CancelToken cancel;
};

TEST_F(SyncJobTest, LeavesARecordAListAndAWayBack) {
    grow();
    request.details = {{RunDetail::flow, "F"}};
    int64_t done = 0;
    request.progress = [&](const SyncJobProgress& progress) {
        EXPECT_EQ(progress.total, 4);
        EXPECT_LE(progress.fraction(), 1);
        done = progress.done;
    };
    const SyncJobResult result = run();
    ASSERT_EQ(result.end, End::done) << result.message;
    EXPECT_EQ(result.message, "1 new, 1 changed, 1 moved to the Trash.");
    EXPECT_EQ(done, 1) << "the others came at once";
    const RunRecord& record = *result.record;
    EXPECT_EQ(record.outcome, Outcome::success);
    EXPECT_EQ(record.metric(RunMetric::filesCopied), 2);
    EXPECT_EQ(record.metric(RunMetric::bytesCopied), 21);
    EXPECT_EQ(record.detail(RunDetail::destinations), pair.destination);
    EXPECT_EQ(record.detail(RunDetail::flow), "F");
    EXPECT_THAT(listOf(record), ElementsAre("changed longer", "new new", "new new/file", "trash extra"));
    EXPECT_EQ(lastSync(), std::chrono::floor<std::chrono::seconds>(dependencies.loop.clock()()));
    EXPECT_EQ(run().end, End::upToDate);

    const UndoResult undo =
        undoRun(record.id, Trigger::manual, dependencies.dependencies.runs, Texts(Language::en), {});
    EXPECT_EQ(undo.restoredCount, 1) << undo.record.summary;
    EXPECT_TRUE(fs::exists(dir / "destination/extra/one"));
}

TEST_F(SyncJobTest, CarriesOutWhatAPersonHasSeen) {
    grow();
    request.plan = SyncEngine::plan(pair);
    write("source/later", "came since");
    fs::remove(dir / "source/longer");
    const SyncJobResult result = run();
    EXPECT_EQ(result.record->outcome, Outcome::warning);
    EXPECT_THAT(result.message, HasSubstr("1 new, 0 changed, 1 moved to the Trash. 1 problem: longer: "));
    EXPECT_FALSE(fs::exists(dir / "destination/later"));
    EXPECT_FALSE(lastSync()) << "not after a run with errors";
    EXPECT_THAT(listOf(*result.record),
                ElementsAre("failed longer", "new new", "new new/file", "trash extra"));
}

TEST_F(SyncJobTest, SaysWhyNothingWasDone) {
    const auto lock = fs::path(SyncPairStore::fileIn(dependencies.folders)).replace_filename("sync.lock");
    enum class Asked { byAPerson, byAChange, byASchedule };
    const auto away = [&] {
        fs::remove_all(pair.destination);
    };
    struct Row {
        const char* what;
        std::function<void()> prepare;
        Asked asked;
        End end;
        std::optional<Outcome> logged;
        const char* message;
    };
    std::optional<FileLock> held;
    const Row rows[] = {
        {"alike", [] {}, Asked::byAChange, End::upToDate, {}, "“Photos” is up to date."},
        {"alike", [] {}, Asked::byASchedule, End::upToDate, Outcome::success, "“Photos” is up to date."},
        {"away", away, Asked::byAPerson, End::blocked, {}, "is not there."},
        {"away", away, Asked::byAChange, End::blocked, {}, "is not there."},
        {"away", away, Asked::byASchedule, End::blocked, Outcome::warning,
         "could not be synced now. The folder"},
        {"nested",
         [&] { request.pair.destination = dir.path(); },
         Asked::byAPerson,
         End::failed,
         {},
         "Source and"},
        {"nested", [&] { request.pair.destination = dir.path(); }, Asked::byAChange, End::failed,
         Outcome::failed, "Sync: Source and"},
        {"emptied",
         [&] {
             for (int i = 0; i < 20; ++i)
                 write("destination/" + std::to_string(i), "");
         },
         Asked::byAChange, End::held, Outcome::warning, "is held back: 20 items"},
        {"busy", [&] { held.emplace(lock); }, Asked::byAPerson, End::busy, {}, "Another sync is running"},
        {"stopped", [&] { cancel.cancel(); }, Asked::byAPerson, End::done, {}, "Stopped before anything"},
        {"stopped", [] {}, Asked::byASchedule, End::done, Outcome::cancelled, "Stopped before anything"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        fs::create_directories(pair.destination);
        request = {.pair = pair};
        if (row.asked != Asked::byAPerson)
            askUnattended(row.asked == Asked::byASchedule);
        row.prepare();
        const SyncJobResult result = run();
        EXPECT_EQ(result.end, row.end);
        EXPECT_THAT(result.message, HasSubstr(row.message));
        EXPECT_EQ(result.record.has_value(), row.logged.has_value());
        if (result.record && row.logged) {
            EXPECT_EQ(result.record->outcome, *row.logged);
        }
        EXPECT_FALSE(lastSync());
        held.reset();
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(pair.destination), {}), 20) << "held back means untouched";
}

TEST_F(SyncJobTest, TakesNoEmptyMountPointForAnEmptySource) {
    write("disk/file", "1");
    write("destination/file", "1");
    vh::test::LoopDisk::run({"mount", "--bind", dir / "disk", pair.source});
    bool isMounted = true;
    const auto unmount = [&] {
        if (std::exchange(isMounted, false))
            vh::test::LoopDisk::run({"umount", pair.source});
    };
    SyncWatchFile(dependencies.folders).write({{pair, {}, pair.source, {}}});
    askUnattended(true);
    for (const char* when : {"while it is compared", "before"}) {
        const SyncJobResult result =
            runSync(request, dependencies.dependencies, {cancel, [&](double, std::string_view) {
                                                             unmount();
                                                         }});
        EXPECT_EQ(result.end, End::blocked) << when;
        EXPECT_FALSE(isMounted);
        EXPECT_TRUE(fs::exists(pair.destination + "/file")) << when;
    }
    request.isAttended = true; // who looks at the plan may
    EXPECT_EQ(run().result.deleted, 1);
}

TEST_F(SyncJobTest, AScheduledOneWaitsForItsTurn) {
    grow();
    askUnattended(true);
    std::optional<FileLock> other(
        fs::path(SyncPairStore::fileIn(dependencies.folders)).replace_filename("sync.lock"));
    const SyncJobResult result =
        runSync(request, dependencies.dependencies, {cancel, [&](double, std::string_view what) {
                                                         if (what == "Waiting for another sync to end")
                                                             other.reset();
                                                     }});
    EXPECT_EQ(result.end, End::done);
    EXPECT_FALSE(other);
}

TEST_F(SyncJobTest, StopsAfterTheItemInHand) {
    grow();
    request.progress = [&](const SyncJobProgress&) {
        cancel.cancel();
    };
    const SyncJobResult result = run();
    EXPECT_EQ(result.record->outcome, Outcome::cancelled);
    EXPECT_TRUE(result.result.stopped);
    EXPECT_THAT(listOf(*result.record), ElementsAre("changed longer"));
    EXPECT_FALSE(lastSync());
}

TEST_F(SyncJobTest, AKilledOneLeavesItsRecordAndAWayBack) {
    for (int i = 0; i < 5; ++i)
        write("destination/extra " + std::to_string(i), "");
    request.progress = [](const SyncJobProgress&) {
        ::raise(SIGKILL);
    };
    EXPECT_EQ(vh::test::runInChild([&] { run(); }).status, 128 + SIGKILL);
    const auto recovered = dependencies.journals.recoverInterrupted(
        [](const std::string& title) { return title + " was killed"; });
    ASSERT_EQ(recovered.size(), 1u);
    EXPECT_EQ(recovered[0].summary, "Photos was killed");
    EXPECT_EQ(recovered[0].toolID, "sync");
    EXPECT_THAT(listOf(recovered[0]), ElementsAre("trash extra 0"));
    EXPECT_TRUE(canUndo(dependencies.files.rows(recovered[0].id)));
    request.progress = {};
    EXPECT_EQ(run().result.deleted, 4) << "the next one does the rest";
}

TEST_F(SyncJobTest, FindsThePairOfAPayload) {
    SyncPair loose;
    loose.source = "/a";
    loose.destination = "/b";
    SyncPair deleting = loose;
    deleting.deleteExtraneous = true;
    const std::string gone = Uuid::random().text();
    struct Row {
        std::map<std::string, std::string> payload;
        std::optional<SyncPair> pair;
    };
    const Row rows[] = {
        {{{"pair", pair.id.text()}, {"source", "/a"}, {"destination", "/b"}}, pair},
        {{{"pair", gone}, {"source", "/a"}, {"destination", "/b"}}, loose},
        {{{"pair", "Photos"}, {"source", "/a"}, {"destination", "/b"}, {"delete", "true"}}, deleting},
        {{{"pair", gone}}, {}},
        {{{"source", "/a"}}, {}},
        {{}, {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(pairOfPayload(row.payload, {pair}), row.pair) << encodeJson(row.payload);
}

} // namespace
} // namespace vh::automation::test

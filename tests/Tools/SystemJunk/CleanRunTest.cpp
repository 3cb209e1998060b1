#include "Core/RunUndo.h"

#include "Platform/Trash.h"
#include "Tools/SystemJunk/SystemJunkModule.h"
#include "support/FaultInjector.h"
#include "support/Sandbox.h"
#include "support/SmallDisk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace vh::junk::test {
namespace {

std::map<std::string, std::pair<std::string, int64_t>> contents(const std::string& folder) {
    std::map<std::string, std::pair<std::string, int64_t>> all;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        all[entry.path().string()] = {
            entry.is_regular_file() && !entry.is_symlink() ? readFile(entry.path().string()) : "",
            statusOf(entry.path().string())->modifiedSeconds};
    return all;
}

void makeCaches(const Sandbox& home) {
    write(home.cache("a/one"), "111");
    write(home.cache("a/deep/two"), "22");
    write(home.cache("b\n\xff: c"), "1");
    fs::create_symlink("nowhere-in-particular", home.cache("a/link"));
    fs::last_write_time(home.cache("a/one"), fs::file_time_type::clock::now() - std::chrono::hours(50));
}

CleanJobResult cleanAll(SystemJunkModule& module, Stores& stores, RemovalMethod method,
                        const JobControl& control = {}) {
    const ScanReport report = module.scan({});
    return runClean(module, report, CleanSelection::all(report, method), Trigger::manual, stores.all(),
                    stores.texts, control);
}

TEST(CleanRun, LeavesARecordAndAListAndCanBeUndone) {
    const Sandbox home;
    makeCaches(home);
    const auto before = contents(home / ".cache");
    SystemJunkModule module(home.configuration());
    Stores stores;
    const CleanJobResult done = cleanAll(module, stores, RemovalMethod::trash);
    EXPECT_TRUE(fs::is_empty(home / ".cache"));
    EXPECT_EQ(done.record.summary, "2 items moved to the Trash, 6 bytes.");
    EXPECT_EQ(done.record.outcome, Outcome::success);
    EXPECT_EQ(done.record.metric(RunMetric::filesRemoved), 2);
    EXPECT_EQ(done.record.metric(RunMetric::freedBytes), 6);
    EXPECT_EQ(done.record.detail(RunDetail::bytes), "6");
    EXPECT_EQ(done.trackingFailure, "");
    const auto stored = Stores().log.all();
    ASSERT_EQ(stored.size(), 1u);
    EXPECT_EQ(stored[0].id, done.record.id);
    EXPECT_EQ(stored[0].summary, done.record.summary);
    const auto rows = stores.files.rows(done.record.id);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_TRUE(canUndo(rows));

    const UndoResult undone = undoRun(done.record.id, Trigger::agent, stores.all(), stores.texts, {});
    EXPECT_EQ(contents(home / ".cache"), before);
    EXPECT_EQ(undone.restoredCount, 2);
    EXPECT_EQ(undone.record.toolID, "system-junk");
    EXPECT_EQ(undone.record.trigger, Trigger::agent);
    EXPECT_EQ(undone.record.summary, "2 items put back, 6 bytes.");
    EXPECT_FALSE(canUndo(stores.files.rows(done.record.id)));

    const UndoResult again = undoRun(done.record.id, Trigger::manual, stores.all(), stores.texts, {});
    EXPECT_EQ(again.restoredCount, 0);
    EXPECT_EQ(contents(home / ".cache"), before);
}

TEST(CleanRun, UndoSaysWhatItCouldNotPutBack) {
    const Sandbox home;
    for (const char* name : {"emptied", "replaced", "fine"})
        write(home.cache(name) + "/a", name);
    SystemJunkModule module(home.configuration());
    Stores stores;
    const CleanJobResult done = cleanAll(module, stores, RemovalMethod::trash);
    for (const CleanedItem& item : done.result.items)
        if (item.path == home.cache("emptied"))
            fs::remove_all(*item.landed);
    write(home.cache("replaced"), "new");
    const UndoResult undone = undoRun(done.record.id, Trigger::manual, stores.all(), stores.texts, {});
    std::map<std::string, std::string> reasons;
    for (const auto& [path, reason] : undone.skipped)
        reasons[path] = reason;
    EXPECT_EQ(reasons, (std::map<std::string, std::string>{
                           {home.cache("emptied"), "no longer in the Trash"},
                           {home.cache("replaced"), "something else lies at its place by now"}}));
    EXPECT_EQ(undone.record.outcome, Outcome::warning);
    EXPECT_EQ(readFile(home.cache("replaced")), "new");
    EXPECT_EQ(readFile(home.cache("fine/a")), "fine");
    EXPECT_TRUE(canUndo(stores.files.rows(done.record.id))); // once the new one is out of the way
    EXPECT_THROW(undoRun(Uuid::random(), Trigger::manual, stores.all(), stores.texts, {}),
                 std::runtime_error);
}

TEST(CleanRun, DeletedForGoodIsNotPutBack) {
    const Sandbox home;
    makeCaches(home);
    SystemJunkModule module(home.configuration());
    Stores stores;
    const CleanJobResult done = cleanAll(module, stores, RemovalMethod::permanent);
    EXPECT_EQ(done.record.summary, "2 items deleted, 6 bytes.");
    EXPECT_FALSE(canUndo(stores.files.rows(done.record.id)));
    const UndoResult undone = undoRun(done.record.id, Trigger::manual, stores.all(), stores.texts, {});
    EXPECT_EQ(undone.skipped.size(), 2u);
    EXPECT_EQ(undone.record.outcome, Outcome::failed);
}

TEST(CleanRun, SkippedItemsAreNamedWithAPlainReason) {
    const Sandbox home;
    makeCaches(home);
    SystemJunkModule module(home.configuration());
    Stores stores;
    const ScanReport report = module.scan({});
    fs::rename(home.cache("b\n\xff: c"), home / "aside");
    const CleanJobResult done = runClean(module, report, CleanSelection::all(report, RemovalMethod::trash),
                                         Trigger::manual, stores.all(), stores.texts, {});
    EXPECT_EQ(done.record.outcome, Outcome::warning);
    EXPECT_EQ(done.record.summary, "1 item moved to the Trash, 5 bytes. 1 item was skipped.");
    ASSERT_EQ(done.skipped.size(), 1u);
    EXPECT_EQ(done.skipped[0].reason, "already gone");
    EXPECT_EQ(done.skippedDetails[0], home.cache("b\\x0A\\xFF: c — already gone"));
}

TEST(CleanRun, StoppedItKeepsWhatWasDone) {
    const Sandbox home;
    for (const char* name : {"a", "b", "c"})
        write(home.cache(name) + "/file", "x");
    SystemJunkModule module(home.configuration());
    Stores stores;
    JobControl control;
    control.progress = [&](double, std::string_view) {
        control.cancel.cancel();
    }; // at the first item
    const CleanJobResult done = cleanAll(module, stores, RemovalMethod::trash, control);
    EXPECT_EQ(done.record.outcome, Outcome::cancelled);
    EXPECT_FALSE(done.error);
    EXPECT_EQ(stores.log.all().size(), 1u);
    EXPECT_EQ(static_cast<size_t>(done.result.removedCount) + paths(module.scan({})).size(), 3u);
}

TEST(CleanRun, AnErrorOfTheWholeCleanIsTheRecord) {
    const Sandbox home;
    makeCaches(home);
    SystemJunkModule module(home.configuration());
    Stores stores;
    const ScanReport report = module.scan({});
    const CleanJobResult done =
        runClean(module, report, {}, Trigger::scheduled, stores.all(), stores.texts, {});
    EXPECT_EQ(done.record.outcome, Outcome::failed);
    EXPECT_EQ(done.record.summary, "No items selected.");
    EXPECT_EQ(done.error, "No items selected.");
}

TEST(CleanRun, GoesOnWhenTheLogHasNoRoom) {
    const auto outcome = vh::test::onSmallDisk(1 << 20, [](const std::string& small, vh::test::SmallDisk) {
        const Sandbox home;
        makeCaches(home);
        ::setenv("XDG_DATA_HOME", small.c_str(), 1); // the Trash lies there too, so the clean is for good
        Stores stores;
        SystemJunkModule module(home.configuration());
        std::ofstream(small + "/filler") << std::string(4 << 20, 'x');
        const CleanJobResult done = cleanAll(module, stores, RemovalMethod::permanent);
        EXPECT_EQ(done.result.removedCount, 2);
        EXPECT_TRUE(fs::is_empty(home / ".cache"));
        EXPECT_EQ(stores.log.all().size(), 1u);
        fs::remove(small + "/filler");
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
}

/// What tests under faults and kills do again and again, and what has to hold after each.
class FaultyRun {
public:
    explicit FaultyRun(RemovalMethod method) : method_(method) { RunLog::thisComputer(); }

    /// Two items, of which the log knows nothing yet, and an earlier run in the log.
    void setUp() {
        home_.reset();
        home_ = std::make_unique<Sandbox>();
        write(home_->cache("a/one"), "111");
        write(home_->cache("b"), "1");
        module_ = std::make_unique<SystemJunkModule>(home_->configuration());
        report_ = module_->scan({});
        Stores().log.begin("system-junk", Trigger::manual)->finish(Outcome::success, "earlier");
    }
    void clean() {
        Stores stores;
        const CleanJobResult done = runClean(*module_, report_, CleanSelection::all(report_, method_),
                                             Trigger::manual, stores.all(), stores.texts, {});
        cleanID_ = done.record.id;
        trackingFailure_ = done.trackingFailure;
    }
    void undo() {
        Stores stores;
        undoRun(cleanID_, Trigger::manual, stores.all(), stores.texts, {});
    }

    /// The next start of a program: gives killed runs their record, and reads the log. Newest first.
    std::vector<RunRecord> runsAfterNextStart() const {
        Stores stores;
        stores.journals.recoverInterrupted([](const std::string& title) { return title + " killed"; });
        auto runs = stores.log.recent(9);
        EXPECT_FALSE(runs.empty());
        EXPECT_EQ(runs.empty() ? "" : runs.back().summary, "earlier");
        return runs;
    }

    /// Every item is where its row says, and one without a row is in its place.
    void expectTruth(const std::vector<RunFileRow>& rows) const {
        for (const ScanItem& item : report_.items) {
            const auto row = std::ranges::find(rows, item.path, &RunFileRow::path);
            const bool exists = fs::exists(item.path);
            if (row == rows.end()) {
                EXPECT_TRUE(exists) << "lost " << item.path;
                continue;
            }
            const bool goneOrInTrash = row->state == cleanState::deleted || row->state == cleanState::trashed;
            if (exists && fs::is_empty(item.path)) {
                EXPECT_TRUE(row->state == cleanState::deletedInPart || row->state == cleanState::doing)
                    << item.path << " is " << row->state;
            }
            EXPECT_EQ(exists, !goneOrInTrash) << item.path << " is " << row->state;
            EXPECT_EQ(row->state == cleanState::trashed, row->place && isInTrash(*row->place, item.path));
        }
    }
    /// Nothing that went to the Trash is ever out of reach of an undo.
    void expectUndoBringsBackAll(const Uuid& run) const {
        Stores stores;
        undoRun(run, Trigger::manual, stores.all(), stores.texts, {});
        expectAllInPlace();
    }
    void expectAllInPlace() const {
        EXPECT_TRUE(fs::exists(home_->cache("a/one")) && readFile(home_->cache("a/one")) == "111");
        EXPECT_TRUE(fs::exists(home_->cache("b")) && readFile(home_->cache("b")) == "1");
    }
    bool toTrash() const { return method_ == RemovalMethod::trash; }
    const Uuid& cleanID() const { return cleanID_; }
    /// What the person was told of the list that could not be kept.
    const std::string& trackingFailure() const { return trackingFailure_; }

private:
    RemovalMethod method_;
    std::unique_ptr<Sandbox> home_;
    std::unique_ptr<SystemJunkModule> module_;
    ScanReport report_;
    Uuid cleanID_ = Uuid::random();
    std::string trackingFailure_;
};

void expectCleanIsAccountedFor(const FaultyRun& run) {
    const auto runs = run.runsAfterNextStart();
    ASSERT_LE(runs.size(), 2u);
    const bool hasRecord = runs.size() == 2;
    run.expectTruth(hasRecord ? Stores().files.rows(runs[0].id) : std::vector<RunFileRow>());
    if (run.toTrash() && hasRecord)
        run.expectUndoBringsBackAll(runs[0].id);
}

TEST(CleanRun, KilledAnywhereNothingIsLostFromSight) {
    for (const auto method : {RemovalMethod::trash, RemovalMethod::permanent}) {
        FaultyRun run(method);
        vh::test::forEachKill([&] { run.setUp(); }, [&] { run.clean(); },
                              [&](const vh::test::FaultPoint&) { expectCleanIsAccountedFor(run); });
    }
}

TEST(CleanRun, NoFailingCallLosesAnythingFromSight) {
    for (const auto method : {RemovalMethod::trash, RemovalMethod::permanent}) {
        FaultyRun run(method);
        vh::test::forEachFault([&] { run.setUp(); }, [&] { run.clean(); },
                               [&](const vh::test::FaultPoint& fault) {
                                   EXPECT_EQ(fault.thrown, std::nullopt);
                                   // Deleting makes room, so a full disk does not stop it; but it is said.
                                   if (fault.kind == vh::test::FaultKind::fullDisk && !run.toTrash())
                                       EXPECT_NE(run.trackingFailure(), "");
                                   else
                                       expectCleanIsAccountedFor(run);
                               });
    }
}

/// Whatever happens to an undo, the undo's list and the clean's say where things are, and a second one puts back all.
TEST(CleanRun, AnUndoThatMeetsAFaultOrIsKilledCanBeAskedForAgain) {
    FaultyRun run(RemovalMethod::trash);
    const auto setUp = [&] {
        run.setUp();
        run.clean();
    };
    const auto check = [&](const vh::test::FaultPoint& fault) {
        const auto runs = run.runsAfterNextStart();
        ASSERT_GE(runs.size(), 2u);
        ASSERT_LE(runs.size(), 3u);
        auto rows = runs.size() == 3 ? Stores().files.rows(runs[0].id) : std::vector<RunFileRow>();
        std::ranges::move(Stores().files.rows(run.cleanID()), std::back_inserter(rows));
        if (fault.kind != vh::test::FaultKind::fullDisk) // which has room for neither list
            run.expectTruth(rows);
        run.expectUndoBringsBackAll(run.cleanID());
    };
    vh::test::forEachFault(
        setUp, [&] { run.undo(); }, check);
    vh::test::forEachKill(
        setUp, [&] { run.undo(); }, check);
}

} // namespace
} // namespace vh::junk::test

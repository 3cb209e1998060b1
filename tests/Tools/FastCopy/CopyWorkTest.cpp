#include "Tools/FastCopy/CopyWork.h"

#include "Core/DatabaseLocation.h"
#include "Core/RunFiles.h"
#include "Core/RunJournal.h"
#include "Core/RunLog.h"
#include "Core/RunWords.h"
#include "Core/Texts.h"
#include "Core/UserDefaults.h"
#include "Platform/Files.h"
#include "Tools/FastCopy/ProblemLines.h"
#include "support/TempDir.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace vh::copy::test {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A source, two places for it and a log of runs.
class CopyWork : public testing::Test {
protected:
    CopyWork() {
        defaults.set(DatabaseLocation::key, folder / "data");
        for (const std::string& each : {source, places[0], places[1]})
            fs::create_directories(each);
        writeFileAtomically(source + "/file", "new");
        writeFileAtomically(source + "/other", "more");
    }
    CopyResult run(const CopyRequest& request, const CancelToken& cancel = {},
                   const std::function<void(const CopyProgress&)>& progress = {}) {
        return runCopy(request, folder / "state", {log, files, journals}, texts,
                       std::make_shared<CopyControl>(), progress, cancel);
    }
    std::string stateOf(const Uuid& id, const std::string& path) {
        for (const RunFileRow& row : files.rows(id))
            if (row.path == path)
                return row.state + " " + row.place.value_or("nowhere");
        return "not listed";
    }

    vh::test::TempDir folder;
    UserDefaults defaults{folder / "defaults.json"};
    RunFiles files{defaults};
    RunLog log{defaults, files};
    RunJournals journals{folder / "journals", log, files};
    Texts texts{Language::en};
    const std::string source = folder / "source";
    const std::vector<std::string> places{folder / "a", folder / "b"};
};

TEST_F(CopyWork, LeavesItsRecordItsListAndAManifestOfWhatLandedWhere) {
    fs::create_directories(places[0] + "/source");
    writeFileAtomically(places[0] + "/source/file", "old");
    const CopyResult result = run({{source}, places, {.conflict = CopyConflict::rename}, ManifestKind::sums});
    EXPECT_EQ(result.record.outcome, Outcome::success);
    EXPECT_EQ(log.all().size(), 1u);
    EXPECT_EQ(result.record.detail(RunDetail::output), joinList(result.manifests));
    EXPECT_EQ(stateOf(result.record.id, source + "/file"), "verified " + places[0] + "/source/file 2");
    ASSERT_EQ(result.manifests.size(), 2u) << "a manifest asks for verification";
    for (const std::string& manifest : result.manifests)
        EXPECT_EQ(checkManifest(manifest, {}).matching, 2);
    EXPECT_THAT(readFile(result.manifests[0]), HasSubstr("  source/file 2\n"));
}

TEST_F(CopyWork, TellsOfFilesThatAManifestCannotName) {
    writeFileAtomically(source + "/latin-\xE9", "1");
    const CopyResult result = run({{source}, {places[0]}, {}, ManifestKind::mhl});
    EXPECT_EQ(result.record.outcome, Outcome::warning);
    EXPECT_THAT(problemsOf(result.report), ElementsAre(HasSubstr("source/latin-\\xE9: a media hash list")));
    EXPECT_EQ(checkManifest(result.manifests.at(0), {}).files, 2);
}

TEST_F(CopyWork, SaysWhatAManifestThatWasAskedForDoesNotList) {
    const CopyRequest request{{source}, {places[0]}, {}, ManifestKind::mhl};
    const std::string beyond = "no place of their own for SHA-256",
                      there = "What was there already was not read";
    const std::string fresh = run(request).record.summary;
    EXPECT_THAT(fresh, AllOf(HasSubstr(beyond), Not(HasSubstr(there))));
    const CopyResult again = run(request);
    EXPECT_THAT(again.manifests, IsEmpty());
    EXPECT_THAT(again.record.summary, AllOf(HasSubstr(there), Not(HasSubstr(beyond))));
}

TEST_F(CopyWork, RecordsWhatCouldNotBeginAndWhatWasStopped) {
    const CopyResult refused = run({{source}, {folder / "gone"}, {}});
    EXPECT_EQ(refused.error, "Destination folder not found: " + (folder / "gone"));
    EXPECT_EQ(refused.record.outcome, Outcome::failed);

    const CancelToken before, meanwhile;
    before.cancel();
    EXPECT_EQ(run({{source}, places, {}}, before).record.outcome, Outcome::cancelled);
    EXPECT_TRUE(fs::is_empty(places[0]));

    const CopyResult stopped = run({{source}, places, {}, ManifestKind::sums}, meanwhile,
                                   [&](const CopyProgress&) { meanwhile.cancel(); });
    EXPECT_EQ(stopped.report.outcome, CopyOutcome::stopped);
    EXPECT_EQ(stopped.record.outcome, Outcome::cancelled);
    EXPECT_THAT(stopped.manifests, IsEmpty());
    EXPECT_EQ(log.all().size(), 3u);
}

TEST_F(CopyWork, ChecksACopyAndLeavesARecordOfIt) {
    const std::string manifest = run({{source}, {places[0]}, {}, ManifestKind::mhl}).manifests.at(0);
    const RunStores runs{log, files, journals};
    const auto check = [&](const std::string& path) {
        return runManifestCheck(path, Trigger::manual, runs, texts, {});
    };
    EXPECT_EQ(check(manifest).record.outcome, Outcome::success);
    writeFileAtomically(places[0] + "/source/file", "bad");
    const CheckResult found = check(manifest);
    EXPECT_EQ(found.record.outcome, Outcome::failed);
    EXPECT_EQ(found.record.detail(RunDetail::errors), "source/file: differs");
    EXPECT_EQ(detailOf(found.record, RunDetail::errors, Texts(Language::es)), "source/file: difiere");
    EXPECT_THAT(check(places[0] + "/source/file").error, HasSubstr("Line 1: no checksum and path"));
    EXPECT_EQ(log.all().size(), 4u);
}

} // namespace vh::copy::test

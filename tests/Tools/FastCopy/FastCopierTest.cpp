#include "Tools/FastCopy/FastCopier.h"

#include "Platform/Files.h"
#include "Tools/FastCopy/CopyError.h"
#include "Tools/FastCopy/ProblemLines.h"
#include "support/FileTree.h"
#include "support/SmallDisk.h"
#include "support/TempDir.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <random>
#include <sys/stat.h>

namespace vh::copy::test {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using vh::test::growTree;
using vh::test::treeOf;

/// A source tree and three places for it.
class Copier : public testing::Test {
protected:
    Copier() {
        fs::create_directories(source);
        for (const std::string& each : places)
            fs::create_directories(each);
    }
    CopyReport copy(const std::vector<std::string>& to, const CopyOptions& options = {},
                    const std::function<void(const CopyProgress&)>& progress = {}) {
        return FastCopier(control).copy({source}, to, options, progress);
    }
    static CopyOptions cloning() { return {.mode = CopyMode::clone}; }

    vh::test::TempDir folder;
    const std::string source = folder / "source";
    const std::vector<std::string> places{folder / "a", folder / "b", folder / "c"};
    std::shared_ptr<CopyControl> control = std::make_shared<CopyControl>();
};

TEST_F(Copier, BringsEveryByteAndAllMetadataToEveryPlace) {
    growTree(source);
    const CopyReport report = copy(places, cloning());
    EXPECT_EQ(report.outcome, CopyOutcome::completed) << testing::PrintToString(problemsOf(report));
    EXPECT_EQ(report.totalVerified(), 3 * report.filesPlanned);
    for (const std::string& each : places) {
        EXPECT_EQ(treeOf(each + "/source"), treeOf(source));
        struct stat sparse {};
        ::stat((each + "/source/inner/sparse").c_str(), &sparse);
        EXPECT_LT(sparse.st_blocks * 512, 1 << 20) << "holes stay holes";
    }
}

TEST_F(Copier, LeavesLinksAndPipesOut) {
    writeFileAtomically(source + "/file", "1");
    fs::create_symlink("/etc", source + "/link");
    ::mkfifo((source + "/pipe").c_str(), 0600);
    const CopyReport report = copy({places[0]});
    EXPECT_EQ(report.outcome, CopyOutcome::completed);
    EXPECT_EQ(treeOf(places[0]).size(), 2u);
}

TEST_F(Copier, CopiesLinksAsLinksWhereAsked) {
    writeFileAtomically(source + "/file", "1");
    fs::create_symlink("file", source + "/near");
    fs::create_directory_symlink("/etc", source + "/far");
    fs::create_symlink("nowhere", source + "/dangling");
    writeFileAtomically(folder / "elsewhere", "stays");
    fs::create_directories(places[1] + "/source");
    fs::create_symlink(folder / "elsewhere", places[1] + "/source/near");
    const CopyOptions asked{.verify = true, .links = CopyLinks::asLinks};
    const CopyReport report = copy({places[0], places[1]}, asked);
    EXPECT_EQ(report.outcome, CopyOutcome::completed) << testing::PrintToString(problemsOf(report));
    EXPECT_EQ(report.leftOut.links, 0);
    EXPECT_EQ(report.destinations[0].copied, 4);
    EXPECT_EQ(report.destinations[1].skipped, 1) << "a link is there already";
    EXPECT_EQ(report.totalVerified(), 2) << "what is no file has no checksum";
    for (const char* name : {"near", "far", "dangling"})
        EXPECT_EQ(fs::read_symlink(places[0] + "/source/" + name), fs::read_symlink(source + "/" + name));
    EXPECT_EQ(fs::read_symlink(places[1] + "/source/near"), folder / "elsewhere");

    CopyOptions replacing = asked;
    replacing.conflict = CopyConflict::overwrite;
    EXPECT_EQ(copy({places[1]}, replacing).outcome, CopyOutcome::completed);
    EXPECT_EQ(fs::read_symlink(places[1] + "/source/near"), "file");
    EXPECT_EQ(readFile(folder / "elsewhere"), "stays") << "nothing is written through a link";
    replacing.conflict = CopyConflict::rename;
    EXPECT_EQ(copy({places[1]}, replacing).outcome, CopyOutcome::completed);
    EXPECT_EQ(fs::read_symlink(places[1] + "/source/near 2"), "file");
}

TEST_F(Copier, NeverFollowsALinkThatLiesInADestination) {
    fs::create_directories(source + "/inner");
    writeFileAtomically(source + "/inner/file", "1");
    fs::create_directories(places[0] + "/source");
    fs::create_directory_symlink(places[1], places[0] + "/source/inner");
    const CopyReport report = copy({places[0]});
    EXPECT_EQ(report.outcome, CopyOutcome::failed);
    EXPECT_TRUE(fs::is_empty(places[1]));
}

TEST_F(Copier, DoesAsToldWhereANameIsTaken) {
    writeFileAtomically(source + "/file.txt", "new");
    fs::create_directories(places[0] + "/source");
    const std::string taken = places[0] + "/source/file.txt";
    struct Case {
        CopyConflict conflict;
        std::string there, second;
        int64_t written, replaced;
    };
    for (const Case& each :
         {Case{CopyConflict::skip, "old", "", 0, 0}, Case{CopyConflict::rename, "old", "new", 1, 0},
          Case{CopyConflict::overwrite, "new", "", 1, 1}}) {
        writeFileAtomically(taken, "old");
        fs::remove(places[0] + "/source/file 2.txt");
        int64_t done = 0;
        const CopyReport report = copy({places[0]}, {.conflict = each.conflict},
                                       [&](const CopyProgress& progress) { done = progress.bytesDone; });
        EXPECT_EQ(readFile(taken), each.there);
        EXPECT_EQ(readFileIfPresent(places[0] + "/source/file 2.txt").value_or(""), each.second);
        EXPECT_EQ(report.totalWritten(), each.written);
        EXPECT_EQ(report.destinations[0].replaced, each.replaced);
        EXPECT_EQ(done, 3) << "what was skipped counts as done";
    }
}

TEST_F(Copier, RefusesToBeginWhatCannotEndWell) {
    growTree(source);
    fs::create_directories(folder / "source too");
    fs::create_directory_symlink(source + "/inner", folder / "way in");
    const auto refusal = [&](const std::string& from, const std::string& to) -> std::string {
        try {
            FastCopier(control).copy({from}, {places[0], to}, {});
        } catch (const CopyError& error) {
            return error.what();
        }
        return {};
    };
    const auto before = treeOf(folder.path());
    EXPECT_EQ(refusal(folder / "gone", places[1]), "Source not found: " + (folder / "gone"));
    EXPECT_EQ(refusal(source, folder / "gone"), "Destination folder not found: " + (folder / "gone"));
    EXPECT_EQ(refusal(source, source + "/inner"), "Destination is inside the source: " + source + "/inner");
    EXPECT_EQ(refusal(source, folder / "way in"), "Destination is inside the source: " + (folder / "way in"));
    EXPECT_EQ(treeOf(folder.path()), before);
    EXPECT_EQ(refusal(source, folder / "source too"), "");
}

TEST_F(Copier, LetsOneDestinationFailAlone) {
    growTree(source);
    const vh::test::TmpfsMount full(6 << 20);
    ASSERT_TRUE(full) << "needs the right to mount";
    const CopyReport report = copy({places[0], full.path()});
    EXPECT_EQ(report.outcome, CopyOutcome::completedWithProblems);
    EXPECT_EQ(treeOf(places[0] + "/source"), treeOf(source));
    EXPECT_FALSE(report.destinations[0].hasProblems());
    EXPECT_GT(report.destinations[1].failed, 0);
    EXPECT_THAT(problemsOf(report).front(),
                HasSubstr("the destination did not accept the file (no space is left"));
    for (const auto& [path, content] : treeOf(full.path()))
        EXPECT_EQ(content, treeOf(folder.path()).at(path)) << "nothing half-written";
}

TEST_F(Copier, EndsTheSameHoweverOftenItIsPaused) {
    growTree(source);
    std::mt19937 random(7);
    int turns = 0;
    const CopyReport report = copy(places, cloning(), [&](const CopyProgress&) {
        for (size_t each = 0; each < places.size(); ++each)
            control->setPaused(each, ++turns < 100 && random() % 2 == 0);
    });
    EXPECT_EQ(report.outcome, CopyOutcome::completed);
    for (const std::string& each : places)
        EXPECT_EQ(treeOf(each + "/source"), treeOf(source));
}

TEST_F(Copier, TakesADestinationOutOrStopsAltogether) {
    growTree(source);
    control->remove(1);
    const CopyReport report = copy(places);
    EXPECT_EQ(report.outcome, CopyOutcome::completed);
    EXPECT_TRUE(report.destinations[1].removed);
    EXPECT_TRUE(fs::is_empty(places[1]));
    control->cancel();
    EXPECT_EQ(copy({places[1]}).outcome, CopyOutcome::stopped);
    EXPECT_TRUE(fs::is_empty(places[1]));
}

TEST_F(Copier, FindsACopyThatIsNotItsSource) {
    writeFileAtomically(source + "/good", "1");
    writeFileAtomically(source + "/rotten", "2");
    const std::string rotten = places[1] + "/source/rotten";
    const CopyReport report =
        copy({places[0], places[1]}, {.verify = true}, [&](const CopyProgress& progress) {
            if (progress.phase == CopyPhase::verifying && progress.currentFile.empty())
                writeFileAtomically(rotten, "3");
        });
    EXPECT_EQ(report.outcome, CopyOutcome::completedWithProblems);
    EXPECT_EQ(report.totalVerified(), 3);
    EXPECT_EQ(report.filesFinished, 1);
    EXPECT_EQ(readFile(rotten), "3");
    EXPECT_THAT(problemsOf(report),
                ElementsAre(HasSubstr("the copy does not match the source (left in place at " + rotten +
                                      " so it can be compared; copy it again)")));
}

} // namespace vh::copy::test

#include "Platform/Files.h"
#include "Tools/FastCopy/FastCopier.h"
#include "Tools/FastCopy/ProblemLines.h"
#include "support/FileTree.h"
#include "support/LoopVolume.h"
#include "support/SmallDisk.h"
#include "support/TempDir.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vh::copy::test {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using vh::test::LoopVolume;
using vh::test::treeOf;

/// A source and three destinations, one of which has a bad day.
class CopyBadDays : public testing::Test {
protected:
    CopyBadDays() {
        fs::create_directories(source);
        for (const std::string& each : places)
            fs::create_directories(each);
    }
    static void write(const std::string& path, const std::string& text) {
        fs::create_directories(fs::path(path).parent_path());
        writeFileAtomically(path, text);
    }
    CopyReport copy(const std::vector<std::string>& to, const CopyOptions& options = {},
                    const std::function<void(const CopyProgress&)>& progress = {}) const {
        return FastCopier(control).copy({source}, to, options, progress);
    }
    /// At the first word of progress, and never again.
    static std::function<void(const CopyProgress&)> once(const std::function<void()>& befalls) {
        return [befalls, isOver = false](const CopyProgress&) mutable {
            if (!std::exchange(isOver, true))
                befalls();
        };
    }

    vh::test::TempDir folder;
    const std::string source = folder / "source";
    const std::vector<std::string> places{folder / "a", folder / "b"};
    const std::shared_ptr<CopyControl> control = std::make_shared<CopyControl>();
};

TEST_F(CopyBadDays, DestinationIsTakenAwayInTheMiddle) {
    struct Case {
        const char* what;
        std::function<void(LoopVolume&)> befalls;
        const char* problem;
        bool failsFiles;
    };
    for (int each = 0; each < 4; ++each)
        write(source + "/" + std::to_string(each), std::string(3 << 20, 'n'));
    for (const Case& each : {Case{"full", [](LoopVolume&) {}, "no space is left on the volume", true},
                             Case{"read-only", [](LoopVolume& volume) { volume.turnReadOnly(); },
                                  "the volume is read-only", true},
                             Case{"unmounted", [](LoopVolume& volume) { volume.detach(); },
                                  "the folder is no longer there", false}}) {
        SCOPED_TRACE(each.what);
        LoopVolume volume(each.what == std::string_view("full") ? 8 << 20 : 24 << 20);
        for (const std::string& place : places)
            fs::remove_all(place + "/source");
        const CopyReport report =
            copy({places[0], volume.path(), places[1]}, {}, once([&] { each.befalls(volume); }));
        EXPECT_EQ(report.outcome, CopyOutcome::completedWithProblems);
        EXPECT_THAT(problemsOf(report), Contains(HasSubstr(each.problem)));
        EXPECT_EQ(report.destinations[1].failed > 0, each.failsFiles);
        for (const size_t whole : {0, 2}) {
            EXPECT_FALSE(report.destinations[whole].hasProblems());
            EXPECT_EQ(treeOf(report.destinations[whole].path + "/source"), treeOf(source));
        }
        if (each.failsFiles) { // what it holds is whole
            for (const auto& [path, content] : treeOf(volume / "source"))
                EXPECT_EQ(content, treeOf(source)[path]) << path;
        }
    }
}

TEST_F(CopyBadDays, AllDestinationsAreReadOnlyFromTheBeginning) {
    write(source + "/small", "1");
    write(source + "/large", std::string(1 << 20, 'n'));
    const LoopVolume one(4 << 20), two(4 << 20);
    one.turnReadOnly();
    two.turnReadOnly();
    const CopyReport report = copy({one.path(), two.path()});
    EXPECT_EQ(report.outcome, CopyOutcome::failed);
    EXPECT_EQ(report.totalFailed(), 4);
    EXPECT_THAT(problemsOf(report), Contains(HasSubstr("the volume is read-only")));
}

TEST_F(CopyBadDays, SourceCannotBeReadInTheMiddle) {
    const LoopVolume volume(24 << 20);
    write(volume / "source/a", "1");
    write(volume / "source/c", "3");
    write(volume / "source/bad", std::string(10 << 20, 'n'));
    volume.breakSecondHalf(volume / "source/bad");
    for (const auto& to : {places, {places[1]}}) {
        for (const std::string& each : to)
            fs::remove_all(each + "/source");
        const CopyReport report = FastCopier(control).copy({volume / "source"}, to, {});
        EXPECT_EQ(report.outcome, CopyOutcome::completedWithProblems);
        EXPECT_THAT(problemsOf(report),
                    Each(AllOf(HasSubstr("bad: "), HasSubstr("the disk could not be read or written"),
                               testing::Not(HasSubstr("did not accept")))));
        EXPECT_EQ(report.totalFailed(), static_cast<int64_t>(to.size()));
        for (const std::string& each : to)
            EXPECT_EQ(treeOf(each).size(), 3u) << "nothing half-written";
    }
}

TEST_F(CopyBadDays, BitThatRotsOnTheMediumIsFound) {
    const LoopVolume volume(24 << 20);
    write(source + "/good", "some text");
    write(source + "/small", "rots in a small file");
    write(source + "/large", std::string(6 << 20, 'n') + "rots in a large file");
    const CopyReport report =
        copy({volume.path(), places[0]}, {.verify = true}, [&](const CopyProgress& progress) {
            if (progress.phase == CopyPhase::verifying && progress.currentFile.empty() &&
                progress.bytesDone == 0) {
                volume.flipByteIn("rots in a small file");
                volume.flipByteIn("rots in a large file");
            }
        });
    EXPECT_EQ(report.destinations[0].badCopies, 2);
    EXPECT_EQ(report.destinations[0].verified, 1);
    EXPECT_EQ(report.destinations[1].verified, 3);
    EXPECT_THAT(problemsOf(report), Each(HasSubstr("the copy does not match the source")));
}

TEST_F(CopyBadDays, NamesThatDifferInCaseAloneMeetADestinationThatDoesNotTellThem) {
    const LoopVolume volume(16 << 20, LoopVolume::Kind::exfat);
    write(source + "/A", "first");
    write(source + "/a", "second");
    write(source + "/not \xff text", "is no name there");
    write(source + "/rest", "3");
    const CopyReport report = copy({volume.path(), places[0]}, {.conflict = CopyConflict::overwrite});
    EXPECT_EQ(report.outcome, CopyOutcome::completedWithProblems);
    EXPECT_THAT(problemsOf(report),
                testing::UnorderedElementsAre(HasSubstr("upper and lower case"),
                                              HasSubstr("the volume does not take this name")));
    EXPECT_EQ(treeOf(volume / "source").size(), 2u);
    EXPECT_EQ(readFile(volume / "source/rest"), "3");
    EXPECT_EQ(treeOf(places[0] + "/source"), treeOf(source));
}

TEST_F(CopyBadDays, FileThatADestinationHasNoRoomForInOnePiece) {
    write(source + "/large", std::string(2 << 20, 'n'));
    write(source + "/small", "1");
    write(source + "/sparse", "1");
    fs::resize_file(source + "/sparse", 5 << 20);
    write(places[0] + "/source/large", "old");
    const auto before = ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{1 << 20, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const CopyReport report = copy(places, {.conflict = CopyConflict::overwrite});
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::signal(SIGXFSZ, before);
    EXPECT_EQ(report.totalFailed(), 4);
    EXPECT_EQ(report.totalWritten(), 2);
    EXPECT_THAT(problemsOf(report), Each(HasSubstr("the file is too large for the volume")));
    EXPECT_EQ(readFile(places[0] + "/source/large"), "old");
    EXPECT_EQ(treeOf(places[0]).size(), 3u) << "nothing half-written";
}

TEST_F(CopyBadDays, FileThatChangesWhileItIsCopied) {
    write(source + "/large", std::string(9 << 20, 'n'));
    write(places[0] + "/large", "old");
    const CopyReport report =
        FastCopier(control).copy({source + "/large"}, places, {.conflict = CopyConflict::overwrite},
                                 once([&] { std::ofstream(source + "/large", std::ios::app) << "more"; }));
    EXPECT_THAT(problemsOf(report), Each("large: the source changed while it was copied"));
    EXPECT_EQ(report.totalFailed(), 2);
    EXPECT_EQ(fs::file_size(places[0] + "/large"), 3u);
    EXPECT_FALSE(fs::exists(places[1] + "/large"));
}

TEST_F(CopyBadDays, PathsLongerThanASystemCallTakesAreCopiedOrNamed) {
    const vh::test::TmpfsMount disk(1 << 20); // goes with all that is too deep to be removed by name
    ASSERT_TRUE(disk) << "needs the right to mount";
    fs::create_directories(disk / "source");
    fs::create_directory(disk / "to");
    int inner = ::open((disk / "source").c_str(), O_RDONLY | O_DIRECTORY);
    const std::string name(250, 'd');
    for (int depth = 0; depth < 20; ++depth) {
        ::mkdirat(inner, name.c_str(), 0700);
        const int next = ::openat(inner, name.c_str(), O_RDONLY | O_DIRECTORY);
        ::close(inner);
        inner = next;
    }
    ::close(::openat(inner, "file", O_WRONLY | O_CREAT, 0600));
    ::close(inner);
    const CopyReport report = FastCopier(control).copy({disk / "source"}, {disk / "to"}, {});
    EXPECT_TRUE(report.totalWritten() == 1 || report.hasProblems());
}

TEST_F(CopyBadDays, FilesWhoseSizeMayNotBeAskedForAreNamed) {
    write(source + "/closed/file", "1");
    write(source + "/open", "1");
    for (const std::string& each : {folder.path(), places[0], source, source + "/open"})
        fs::permissions(each, fs::perms(0777));
    fs::permissions(source + "/closed", fs::perms(0444));
    const vh::test::ChildOutcome child = vh::test::runUnprivileged([&] {
        const CopyReport report = copy({places[0]});
        EXPECT_EQ(report.outcome, CopyOutcome::completedWithProblems);
        EXPECT_THAT(problemsOf(report), Contains(HasSubstr("source/closed")));
    });
    EXPECT_EQ(child.status, 0) << child.message;
}

TEST_F(CopyBadDays, PausedAHundredTimesAndTakenOutWhilePausedNothingIsCopiedTwice) {
    for (int each = 0; each < 8; ++each)
        write(source + "/" + std::to_string(each), std::string(5 << 20, static_cast<char>('a' + each)));
    std::mt19937 random(11);
    int turns = 0;
    std::vector<std::string> to{places[0], folder / "removed", places[1]};
    fs::create_directory(to[1]);
    control->setPaused(1, true);
    const CopyReport report = copy(to, {}, [&](const CopyProgress&) {
        ++turns;
        for (const size_t each : {0, 2})
            control->setPaused(each, turns < 100 && random() % 2 == 0);
        if (turns == 3)
            control->remove(1);
    });
    EXPECT_EQ(report.outcome, CopyOutcome::completed);
    EXPECT_TRUE(report.destinations[1].removed);
    EXPECT_THAT(treeOf(to[1]), IsEmpty());
    EXPECT_EQ(report.files.size(), 16u);
    for (const size_t each : {0, 2}) {
        EXPECT_EQ(report.destinations[each].copied + report.destinations[each].cloned, 8);
        EXPECT_EQ(treeOf(to[each] + "/source"), treeOf(source));
    }
}

} // namespace vh::copy::test

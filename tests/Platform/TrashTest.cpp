#include "Platform/Trash.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/Linux/TrashInfo.h"
#include "Platform/Posix/Rename.h"
#include "Platform/SystemError.h"
#include "support/ErrorOf.h"
#include "support/FaultInjector.h"
#include "support/SmallDisk.h"

#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace vh;
using namespace vh::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

void put(const std::string& path, const std::string& text = "text") {
    std::ofstream(path) << text;
}

TEST(TrashInfo, encodesEveryByteThatIsNotUnreserved) {
    const std::string path = "/home/a b/100%\n\xff/ñ-_.!~*'()";
    const std::string text = trashInfoText({path, "2026-03-29T14:05:00"});
    EXPECT_EQ(text, "[Trash Info]\nPath=/home/a%20b/100%25%0A%FF/%C3%B1-_.!~*'()\n"
                    "DeletionDate=2026-03-29T14:05:00\n");
    EXPECT_EQ(parseTrashInfo(text)->path, path);
    EXPECT_EQ(parseTrashInfo(text)->deletionDate, "2026-03-29T14:05:00");
}

TEST(TrashInfo, readsWhatOthersWriteAndRefusesWhatLies) {
    const std::pair<const char*, std::optional<std::string>> rows[] = {
        {"[Trash Info]\r\nPath=/a\r\nPath=/b\r\n", "/a"},
        {"# note\n[Other]\nPath=/x\n[Trash Info]\nX-Own=1\nPath = a%2fb", "a/b"},
        {"[Trash Info]\nDeletionDate=2026-01-01T00:00:00\n", std::nullopt},
        {"Path=/a\n", std::nullopt},
        {"[Trash Info]\nPath=/a%4\n", std::nullopt},
        {"[Trash Info]\nPath=/a%zz\n", std::nullopt},
        {"[Trash Info]\nPath=a%00b\n", std::nullopt},
        {"[Trash Info]\nPath=a/../../etc\n", std::nullopt},
        {"", std::nullopt}};
    for (const auto& [text, path] : rows) {
        const auto info = parseTrashInfo(text);
        EXPECT_EQ(info ? std::optional(info->path) : std::nullopt, path) << text;
    }
}

TEST(TrashInfo, namesAreNumberedBeforeTheExtensionAndFit) {
    EXPECT_EQ(trashName("a.tar.gz", 1, 255), "a.tar.gz");
    EXPECT_EQ(trashName("a.txt", 2, 255), "a.2.txt");
    EXPECT_EQ(trashName(".profile", 3, 255), ".profile.3");
    EXPECT_EQ(trashName("folder", 12, 255), "folder.12");
    const std::string ascii = std::string(251, 'a') + ".txt";
    EXPECT_EQ(trashName(ascii, 10, 255), std::string(238, 'a') + ".10.txt");
    std::string accents = "x";
    while (accents.size() < 255)
        accents += "ñ";
    EXPECT_EQ(trashName(accents, 1, 255), accents.substr(0, 245));
    EXPECT_EQ(trashName(accents, 2, 255), accents.substr(0, 243) + ".2");
}

/// File systems without the call that refuses to replace are met by failing it with what they answer.
TEST(RenameWithoutReplacing, isSafeWhereTheSystemHasNoSuchCall) {
    const TempDir folder;
    const int at = ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const auto renamed = [&](const char* from, const char* to) {
        int reason = 0;
        EXPECT_TRUE(
            runWithFault(0, EINVAL, [&] { reason = renameWithoutReplacing(at, from, at, to) ? 0 : errno; }));
        return reason;
    };
    put(folder / "file", "file");
    put(folder / "taken", "taken");
    fs::create_directories(folder / "sub/inner");
    fs::create_directory(folder / "empty");
    fs::create_symlink("taken", folder / "link");
    EXPECT_EQ(renamed("file", "taken"), EEXIST);
    EXPECT_EQ(renamed("sub", "taken"), EEXIST);
    EXPECT_EQ(renamed("sub", "empty"), EEXIST);
    EXPECT_EQ(renamed("none", "new"), ENOENT);
    EXPECT_EQ(readFile(folder / "taken"), "taken");
    EXPECT_EQ(renamed("file", "file moved"), 0);
    EXPECT_EQ(renamed("sub", "sub moved"), 0);
    EXPECT_EQ(renamed("link", "link moved"), 0);
    EXPECT_TRUE(fs::is_symlink(folder / "link moved"));
    EXPECT_THAT(childNames(folder.path()),
                testing::UnorderedElementsAre("taken", "empty", "file moved", "sub moved", "link moved"));
    ::close(at);
}

/// A home of its own, so that its Trash is empty.
class Trash : public testing::Test {
protected:
    Trash() {
        ::setenv("HOME", home_.path().c_str(), 1);
        ::unsetenv("XDG_DATA_HOME");
    }
    const TempDir home_;
    const std::string trash_ = home_ / ".local/share/Trash";

    std::vector<std::string> namesIn(const std::string& part) const {
        return statusOf(trash_ + part) ? childNames(trash_ + part) : std::vector<std::string>();
    }
};

TEST_F(Trash, takesItemsOfAnyNameAndGivesThemBack) {
    const std::string names[] = {"plain.txt", "bad\xff name",        "line\nend",
                                 ".hidden",   std::string(255, 'n'), "%41"};
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::string path = home_ / ("gone/" + name);
        fs::create_directories(home_ / "gone");
        put(path, name);
        const std::string landed = moveToTrash(path, identityOf(path));
        EXPECT_THAT(landed, testing::StartsWith(trash_ + "/files/"));
        EXPECT_FALSE(identityOf(path));
        EXPECT_TRUE(isInTrash(landed, path));
        EXPECT_FALSE(isInTrash(landed, path + "x"));
        fs::remove(home_ / "gone"); // a missing parent is made again
        restoreFromTrash(landed, path);
        EXPECT_EQ(readFile(path), name);
        EXPECT_FALSE(isInTrash(landed, path));
        fs::remove_all(home_ / "gone");
    }
    EXPECT_THAT(namesIn("/files"), IsEmpty());
    EXPECT_THAT(namesIn("/info"), IsEmpty());
    struct stat status {};
    ASSERT_EQ(::stat((trash_ + "/files").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(Trash, keepsEveryItemOfOneName) {
    std::set<std::string> places;
    for (const char* text : {"1", "2", "3"}) {
        put(home_ / "a.txt", text);
        places.insert(moveToTrash(home_ / "a.txt"));
    }
    put(trash_ + "/files/a.4.txt", "an item that lost its info file");
    put(home_ / "a.txt", "5");
    places.insert(moveToTrash(home_ / "a.txt"));
    std::set<std::string> texts;
    for (const std::string& place : places)
        texts.insert(readFile(place));
    EXPECT_THAT(texts, ElementsAre("1", "2", "3", "5"));
    EXPECT_EQ(namesIn("/info").size(), 4u);
    EXPECT_TRUE(places.contains(trash_ + "/files/a.2.txt"));
    size_t calls = 0;
    for (int more = 0; more < 100; ++more) {
        put(home_ / "a.txt", "more");
        calls = countFileCalls([&] { places.insert(moveToTrash(home_ / "a.txt")); });
    }
    EXPECT_EQ(places.size(), 104u);
    EXPECT_LT(calls, 50u) << "not every number is tried";
}

TEST_F(Trash, movesALinkItselfAndFindsTheItemThroughLinkedFolders) {
    fs::create_directories(home_ / "real/sub");
    put(home_ / "real/sub/file");
    fs::create_symlink("real", home_ / "alias");
    fs::create_symlink("sub", home_ / "real/link");
    const std::string landed = moveToTrash(home_ / "alias/link/");
    EXPECT_TRUE(fs::is_symlink(landed));
    EXPECT_TRUE(identityOf(home_ / "real/sub/file"));
    EXPECT_TRUE(isInTrash(landed, home_ / "alias/link"));
    EXPECT_TRUE(isInTrash(landed, home_ / "real/link"));
    restoreFromTrash(landed, home_ / "alias/link");
    EXPECT_TRUE(fs::is_symlink(home_ / "real/link"));
}

TEST_F(Trash, refusesWhatWasSwapped) {
    put(home_ / "file", "mine");
    const auto expected = identityOf(home_ / "file");
    put(home_ / "other", "other");
    fs::rename(home_ / "other", home_ / "file");
    EXPECT_THAT(errorOf([&] { (void)moveToTrash(home_ / "file", expected); }), HasSubstr("Something else"));
    EXPECT_EQ(readFile(home_ / "file"), "other");
    for (const char* path : {"/", "", ".", ".."})
        EXPECT_THROW((void)moveToTrash(path), SystemError);
    EXPECT_THAT(errorOf([&] { (void)moveToTrash(home_ / "none"); }), HasSubstr("No such file"));
    EXPECT_THROW((void)moveToTrash(home_.path()), SystemError); // it holds the Trash
    EXPECT_THAT(namesIn("/info"), IsEmpty());
}

TEST_F(Trash, noticesASwapAtEveryMoment) {
    const std::string path = home_ / "file";
    std::optional<FileIdentity> expected;
    const auto setUp = [&] {
        fs::remove_all(home_ / ".local");
        put(path, "mine");
        put(home_ / "other", "other");
        expected = identityOf(path);
    };
    const auto swap = [&] {
        std::error_code gone;
        if (fs::exists(path))
            fs::rename(home_ / "other", path, gone);
    };
    size_t refused = 0;
    forEachMeddling(
        setUp, swap, [&] { (void)moveToTrash(path, expected); },
        [&](const FaultPoint& point) {
            EXPECT_EQ(namesIn("/files").size(), point.thrown ? 0u : 1u);
            EXPECT_EQ(namesIn("/info").size(), point.thrown ? 0u : 1u);
            EXPECT_EQ(point.thrown ? readFile(path) : "other", "other");
            refused += point.thrown.has_value();
        });
    EXPECT_GT(refused, 3u);
}

TEST_F(Trash, restoresOnlyToItsPlaceAndOverNothing) {
    put(home_ / "file", "old");
    const std::string landed = moveToTrash(home_ / "file");
    EXPECT_THAT(errorOf([&] { restoreFromTrash(landed, home_ / "elsewhere"); }), HasSubstr("came from"));
    put(home_ / "file", "new");
    EXPECT_THAT(errorOf([&] { restoreFromTrash(landed, home_ / "file"); }), HasSubstr("File exists"));
    EXPECT_EQ(readFile(home_ / "file"), "new");
    EXPECT_TRUE(isInTrash(landed, home_ / "file"));
    fs::remove(landed);
    EXPECT_FALSE(isInTrash(landed, home_ / "file"));
    EXPECT_THAT(errorOf([&] { restoreFromTrash(landed, home_ / "file"); }), HasSubstr("No such file"));
    put(home_ / "stray");
    EXPECT_FALSE(isInTrash(home_ / "stray", home_ / "stray"));
}

TEST_F(Trash, aFaultLeavesTheItemWhereItWasAndNoInfoBehind) {
    const std::string path = home_ / "folder";
    const auto setUp = [&] {
        fs::remove_all(home_ / ".local");
        fs::create_directories(path);
        put(path + "/file");
    };
    size_t failed = 0;
    forEachFault(
        setUp, [&] { (void)moveToTrash(path); },
        [&](const FaultPoint& point) {
            const bool isThere = identityOf(path + "/file").has_value();
            EXPECT_EQ(isThere, point.thrown.has_value());
            EXPECT_EQ(namesIn("/info").size(), isThere ? 0u : 1u);
            EXPECT_EQ(namesIn("/files").size(), isThere ? 0u : 1u);
            failed += isThere;
        });
    EXPECT_GT(failed, 10u);

    std::string landed;
    forEachKill(
        [&] {
            setUp();
            landed = moveToTrash(path);
        },
        [&] { restoreFromTrash(landed, path); },
        [&](const FaultPoint&) {
            EXPECT_NE(isInTrash(landed, path), identityOf(path + "/file").has_value());
            fs::remove_all(path);
        });
}

/// A second volume, in memory.
class VolumeTrash : public Trash {
protected:
    void SetUp() override {
        ASSERT_TRUE(disk_) << "needs the right to mount";
        fs::create_directory(disk_ / "sub");
        put(disk_ / "sub/a file");
    }
    TmpfsMount disk_{1 << 20};
    const std::string path_ = disk_ / "sub/a file";
    const std::string user_ = std::to_string(::geteuid());
    const std::string own_ = disk_ / (".Trash-" + user_);
};

TEST_F(VolumeTrash, keepsItemsOnTheirVolumeWithRelativePaths) {
    const std::string landed = moveToTrash(path_);
    EXPECT_EQ(landed, own_ + "/files/a file");
    EXPECT_THAT(readFile(own_ + "/info/a file.trashinfo"), HasSubstr("\nPath=sub/a%20file\n"));
    EXPECT_TRUE(isInTrash(landed, path_));
    EXPECT_FALSE(identityOf(trash_)) << "the home is none of its business";
    restoreFromTrash(landed, path_);
    EXPECT_TRUE(identityOf(path_));
}

/// One file system mounted at two places: a rename between them fails although the device is the same.
TEST_F(VolumeTrash, fallsBackToTheVolumeWhereTheHomeCannotBeReached) {
    fs::create_directory(disk_ / "home");
    fs::create_directory(home_ / "bound");
    ASSERT_EQ(::mount((disk_ / "home").c_str(), (home_ / "bound").c_str(), nullptr, MS_BIND, nullptr), 0);
    ::setenv("XDG_DATA_HOME", (home_ / "bound").c_str(), 1);
    EXPECT_EQ(moveToTrash(path_), own_ + "/files/a file");
    EXPECT_THAT(childNames(home_ / "bound/Trash/info"), IsEmpty());
    ::unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(::umount((home_ / "bound").c_str()), 0);
}

TEST_F(VolumeTrash, usesTheSharedFolderOnlyWhenItIsSticky) {
    fs::create_directory(disk_ / ".Trash");
    ASSERT_EQ(::chmod((disk_ / ".Trash").c_str(), 0777), 0);
    EXPECT_EQ(moveToTrash(path_), own_ + "/files/a file");
    ASSERT_EQ(::chmod((disk_ / ".Trash").c_str(), 01777), 0);
    put(path_);
    const std::string landed = moveToTrash(path_);
    EXPECT_EQ(landed, disk_ / (".Trash/" + user_ + "/files/a file"));
    EXPECT_TRUE(isInTrash(landed, path_));
    restoreFromTrash(landed, path_);

    fs::rename(disk_ / ".Trash", disk_ / "elsewhere");
    fs::create_symlink("elsewhere", disk_ / ".Trash");
    EXPECT_THAT(moveToTrash(path_), testing::StartsWith(own_));
}

TEST_F(VolumeTrash, refusesAPlantedFolder) {
    fs::create_directory(disk_ / "trap");
    fs::create_symlink("trap", own_);
    EXPECT_THAT(errorOf([&] { (void)moveToTrash(path_); }), HasSubstr(own_));
    fs::remove(own_);
    fs::create_directory(own_);
    ASSERT_EQ(::chown(own_.c_str(), 12345, 12345), 0);
    EXPECT_THAT(errorOf([&] { (void)moveToTrash(path_); }), HasSubstr("somebody else"));
    EXPECT_TRUE(identityOf(path_));
    EXPECT_THAT(childNames(disk_ / "trap"), IsEmpty());
}

TEST_F(VolumeTrash, saysWhyItCannotBeMade) {
    ASSERT_EQ(::chmod(disk_.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((disk_ / "sub").c_str(), 0777), 0);
    const TempDir home;
    ASSERT_EQ(::chmod(home.path().c_str(), 0777), 0);
    const ChildOutcome outcome = runUnprivileged([&] {
        ::setenv("HOME", home.path().c_str(), 1);
        (void)moveToTrash(path_);
    });
    EXPECT_EQ(outcome.message, disk_ / ".Trash-65534: Permission denied");
    EXPECT_TRUE(identityOf(path_));
}

} // namespace

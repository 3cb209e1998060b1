#include "Platform/GuardedFolder.h"

#include "support/ErrorOf.h"
#include "support/TempDir.h"

#include <fstream>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace vh;
using namespace vh::test;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

void put(const std::string& path, const std::string& text = "text") {
    std::ofstream(path) << text;
}

TEST(GuardedFolder, followsOnlyLinksThatNobodyElseCanHavePut) {
    const TempDir folder;
    fs::create_directories(folder / "real/sub/deep");
    fs::create_directory_symlink("../real/./sub", folder / "real/up");
    fs::create_directory_symlink(folder / "real", folder / "link");
    fs::create_directory_symlink("loop", folder / "loop");
    fs::create_directories(folder / "open");
    fs::create_directory_symlink(folder / "real", folder / "open/link");
    fs::create_directories(folder / "anas");
    fs::create_directory_symlink(folder / "real", folder / "anas/link");
    ASSERT_EQ(::chmod((folder / "open").c_str(), 0777), 0);
    ASSERT_EQ(::chown((folder / "anas").c_str(), 1000, 1000), 0) << "needs root";

    EXPECT_EQ(GuardedFolder::open(folder / "link/up/deep").path(), folder / "real/sub/deep");
    EXPECT_EQ(GuardedFolder::open(folder / "real").below("sub//deep/").path(), folder / "real/sub/deep");
    EXPECT_THROW(GuardedFolder::open(folder / "open/link"), LinkRefused);
    EXPECT_THROW(GuardedFolder::open(folder / "anas/link/sub"), LinkRefused);
    // Below an open folder there is no such trust.
    EXPECT_THROW(GuardedFolder::open(folder.path()).below("link/sub"), LinkRefused);
    for (const char* path : {"loop", "none/sub"})
        EXPECT_THROW(GuardedFolder::open(folder / path), SystemError) << path;
    EXPECT_THROW(GuardedFolder::open("real"), SystemError);
    EXPECT_THROW(GuardedFolder::open(folder / "real").below("../real"), SystemError);
}

TEST(GuardedFolder, opensFilesAloneAndCopiesThemAsOnlyOurs) {
    const TempDir folder;
    fs::create_directories(folder / "from/app/sub");
    put(folder / "from/app/run");
    ASSERT_EQ(::chmod((folder / "from/app/run").c_str(), 06777), 0);
    ASSERT_EQ(::mkfifo((folder / "from/pipe").c_str(), 0600), 0);
    fs::create_symlink("app/run", folder / "from/link");
    const GuardedFolder from = GuardedFolder::open(folder / "from");
    EXPECT_THROW(from.openFile("pipe"), SystemError);
    EXPECT_THROW(from.openFile("app"), SystemError);
    EXPECT_THROW(from.openFile("link"), LinkRefused);

    const GuardedFolder to = GuardedFolder::open(folder.path()).made("a/to");
    to.addCopy("copy", from, "app");
    to.addFile("run", from.below("app").openFile("run"));
    EXPECT_THAT(to.names(), ElementsAre("copy", "run"));
    EXPECT_EQ(fs::status(folder / "a/to/copy/run").permissions(), fs::perms(0755));
    EXPECT_EQ(fs::status(folder / "a/to/run").permissions(), fs::perms(0644));
    EXPECT_EQ(to.startOfFile("run", 2), "te");
    EXPECT_EQ(to.startOfFile("copy", 2), "");
}

TEST(GuardedFolder, sumsTheFilesOfItsOwnVolume) {
    const TempDir folder;
    fs::create_directories(folder / "top/a/b");
    fs::create_directories(folder / "other");
    put(folder / "top/file", "12345");
    put(folder / "top/a/b/file", "123");
    put(folder / "other/file", "a great deal of text");
    fs::create_symlink(folder / "other/file", folder / "top/link");
    fs::create_directory_symlink(folder / "other", folder / "top/a/link");
    fs::create_directory(folder / "top/mounted");
    ASSERT_EQ(
        ::mount((folder / "other").c_str(), (folder / "top/mounted").c_str(), nullptr, MS_BIND, nullptr), 0)
        << "needs the right to mount";
    EXPECT_EQ(GuardedFolder::open(folder / "top").byteSize(), 8);
    EXPECT_FALSE(
        GuardedFolder::open(folder / "top/mounted").isOnVolumeOf(GuardedFolder::open(folder / "top")));
    ASSERT_EQ(::umount((folder / "top/mounted").c_str()), 0);

    std::string deep = folder / "deep";
    for (int i = 0; i < 140; ++i)
        deep += "/d";
    fs::create_directories(deep);
    EXPECT_THAT(errorOf([&] { GuardedFolder::open(folder / "deep").byteSize(); }),
                HasSubstr("Too many folders"));
}

} // namespace

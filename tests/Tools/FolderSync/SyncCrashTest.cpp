#include "Platform/Files.h"
#include "Platform/TrashSearch.h"
#include "Tools/FolderSync/SyncEngine.h"
#include "support/FileTree.h"
#include "support/RandomKills.h"
#include "support/SmallDisk.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/xattr.h>

namespace vh::sync::test {

namespace fs = std::filesystem;
using testing::IsEmpty;
using vh::test::Tree;
using vh::test::treeOf;

/// A source and a destination that holds older files of some of its names, and some that have to leave.
class SyncCrash : public testing::Test {
protected:
    SyncCrash() {
        EXPECT_TRUE(disk) << "needs the right to mount";
        ::setenv("XDG_DATA_HOME", (disk / "data").c_str(), 1);
        pair.source = disk / "from/tree";
        pair.destination = disk / "to";
        pair.deleteExtraneous = true;
        for (size_t each = 0; each < 60; ++each)
            write(pair.source + "/inner/deep " + std::to_string(each % 7) + "/" + std::to_string(each),
                  std::string(each * 70, 'n'));
        write(pair.source + "/file", "new");
        ::setxattr((pair.source + "/file").c_str(), "user.note", "kept", 4, 0);
        write(pair.source + "/large", std::string((1u << 20) + 77, 'n'));
        write(pair.source + "/sparse", "head");
        fs::resize_file(pair.source + "/sparse", 900'000);
        fs::create_symlink("new target", pair.source + "/link");
        fs::permissions(pair.source + "/inner", fs::perms(0550));
        for (const auto& each : fs::recursive_directory_iterator(disk / "from"))
            vh::test::setTime(each.path(), 1'500'000'000);
        setUp();
        old = treeOf(pair.destination);
    }
    ~SyncCrash() override { ::unsetenv("XDG_DATA_HOME"); }

    static void write(const std::string& path, const std::string& text) {
        fs::create_directories(fs::path(path).parent_path());
        writeFileAtomically(path, text);
        vh::test::setTime(path, 1'000'000'000);
    }
    void setUp() const {
        fs::remove_all(disk / "data");
        fs::remove_all(pair.destination);
        for (const char* name : {"/file", "/large", "/inner/deep 1/8", "/extra/1", "/extra 2", "/extra 3"})
            write(pair.destination + name, "old");
        fs::create_symlink("old target", pair.destination + "/link");
        vh::test::setTime(pair.destination + "/link", 1'000'000'000);
    }
    SyncResult run() const { return SyncEngine::apply(SyncEngine::plan(pair), pair); }

    vh::test::TmpfsMount disk{96 << 20};
    SyncPair pair;
    Tree old;
};

TEST_F(SyncCrash, KilledAtAnyMomentItIsFinishedByTheNext) {
    const Tree wanted = treeOf(pair.source);
    const auto check = [&] {
        vh::test::expectOldOrNew(treeOf(pair.destination), old, wanted, ".vhsync-tmp");
        for (const auto& [top, name] :
             {std::pair("/extra", "/1"), std::pair("/extra 2", ""), std::pair("/extra 3", "")}) {
            const std::string path = pair.destination + top;
            // A kill may have left a note of the Trash that has nothing, so the next item has a numbered name there.
            const auto landed = findInTrash(path, {});
            EXPECT_TRUE(fs::exists(path + name) || (landed && fs::exists(*landed + name))) << path;
        }
    };
    vh::test::RandomKills kills{200, 3};
    kills.setUp = [&] {
        setUp();
    };
    kills.work = [&] {
        run();
    };
    kills.check = check;
    kills.finish = [&] {
        EXPECT_THAT(run().faults, IsEmpty());
        vh::test::expectSame(treeOf(pair.destination), wanted);
    };
    kills.run();
}

} // namespace vh::sync::test

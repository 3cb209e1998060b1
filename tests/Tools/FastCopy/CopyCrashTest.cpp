#include "Platform/Files.h"
#include "Tools/FastCopy/FastCopier.h"
#include "support/FaultInjector.h"
#include "support/FileTree.h"
#include "support/RandomKills.h"
#include "support/SmallDisk.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/xattr.h>

namespace vh::copy::test {

namespace fs = std::filesystem;
using vh::test::expectSame;
using vh::test::FaultPoint;
using vh::test::Tree;
using vh::test::treeOf;

/// A source and two destinations that hold older files of some of its names.
class CopyCrash : public testing::Test {
protected:
    CopyCrash() {
        EXPECT_TRUE(disk) << "needs the right to mount";
        write(source + "/small", "new");
        ::setxattr((source + "/small").c_str(), "user.note", "kept", 4, 0);
        write(source + "/inner/new", "new too");
        write(source + "/large", std::string(300'000, 'n'));
        write(source + "/sparse", "head");
        fs::resize_file(source + "/sparse", 400'000);
        fs::permissions(source + "/inner", fs::perms(0750));
    }

    static void write(const std::string& path, const std::string& text) {
        fs::create_directories(fs::path(path).parent_path());
        writeFileAtomically(path, text);
        vh::test::setTime(path, -1000);
    }
    void prepare() {
        for (const std::string& each : places) {
            fs::remove_all(each);
            for (const char* name : {"small", "large", "kept"})
                write(each + "/source/" + name, "old");
        }
        old = treeOf(places[0]);
        wanted = treeOf(disk / "from");
        wanted.insert(*old.find("source/kept"));
    }
    CopyReport copy(CopyLanes::Threads threads = CopyLanes::Threads::own) const {
        return FastCopier(std::make_shared<CopyControl>(), threads)
            .copy({source}, places, {.conflict = CopyConflict::overwrite, .verify = verifies});
    }
    void expectWhole() const {
        for (const std::string& each : places)
            vh::test::expectOldOrNew(treeOf(each), old, wanted, ".varnholt-partial");
    }
    void finish() const {
        EXPECT_EQ(copy().outcome, CopyOutcome::completed);
        for (const std::string& each : places)
            expectSame(treeOf(each), wanted);
    }

    vh::test::TmpfsMount disk{64 << 20};
    const std::string source = disk / "from/source";
    const std::vector<std::string> places{disk / "a", disk / "b"};
    bool verifies = false;
    Tree old, wanted; ///< of a destination, before and in the end
};

TEST_F(CopyCrash, KilledAtAnyMomentItIsFinishedByTheNext) {
    for (size_t each = 0; each < 60; ++each)
        write(source + "/inner/deep/" + std::to_string(each), std::string(each * 70, 'n'));
    write(source + "/large", std::string(900'077, 'n'));
    vh::test::RandomKills kills{200, 5};
    kills.setUp = [&] {
        prepare();
    };
    kills.work = [&] {
        copy();
    };
    kills.check = [&] {
        expectWhole();
    };
    kills.finish = [&] {
        finish();
    };
    kills.run();
}

TEST_F(CopyCrash, LeavesOldOrWholeFilesWhateverCallFails) {
    using Group = vh::test::CallGroup;
    verifies = true;
    ContentHash{HashAlgorithm::sha256}; // its module is opened once a process, which would shift the calls
    CopyReport report;
    const auto setUp = [&] {
        prepare();
    };
    const auto work = [&] {
        report = copy(CopyLanes::Threads::none);
    };
    const auto afterFault = [&](const FaultPoint& fault) {
        const Group group = fault.what.group;
        const bool isLock =
            fault.what.name == std::string_view("flock"); // where there are none, it goes without
        if (group == Group::attribute &&
            !isLock) { // its bytes were verified, what else it has is not the source's
            EXPECT_TRUE(report.hasProblems());
        } else {
            expectWhole();
        }
        for (size_t each = 0; each < places.size(); ++each) {
            const Tree now = treeOf(places[each]);
            if (!fault.thrown && !report.destinations[each].hasProblems() && group != Group::remove)
                expectSame(now, wanted);
            for (const auto& [path, description] : now)
                EXPECT_TRUE(!path.ends_with("-partial") || group == Group::remove) << path;
        }
    };
    vh::test::forEachFault(setUp, work, afterFault);
    vh::test::forEachKill(setUp, work, [&](const FaultPoint&) {
        expectWhole();
        finish();
    });
}

} // namespace vh::copy::test

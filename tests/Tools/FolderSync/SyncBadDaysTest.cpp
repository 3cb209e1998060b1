#include "Platform/Files.h"
#include "Platform/Trash.h"
#include "Tools/FolderSync/SyncFolders.h"
#include "support/FileTree.h"
#include "support/LoopVolume.h"
#include "support/SmallDisk.h"
#include "support/TempDir.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vh::sync::test {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using vh::test::LoopVolume;
using vh::test::treeOf;

class SyncBadDays : public SyncFolders {};

TEST_F(SyncBadDays, DestinationIsTakenAwayInTheMiddle) {
    struct Case {
        const char* what;
        std::function<void(LoopVolume&)> befalls;
        testing::Matcher<const std::vector<std::string>&> errors;
    };
    for (const char* name : {"a", "b", "c"})
        write(from(name), name);
    for (const Case& each :
         {Case{"read-only", [](LoopVolume& volume) { volume.turnReadOnly(); },
               ElementsAre("b: copy failed (errno 30, the volume is read-only)",
                           "c: copy failed (errno 30, the volume is read-only)", HasSubstr("extra: "))},
          Case{"unmounted", [](LoopVolume& volume) { volume.detach(); },
               ElementsAre(HasSubstr("extra: "), HasSubstr(": the folder is no longer there"))}}) {
        SCOPED_TRACE(each.what);
        LoopVolume volume(4 << 20);
        pair.destination = volume / "copy";
        write(to("extra"), "stays");
        const SyncResult result = run({.progress = [&](int64_t done, int64_t) {
            if (done == 1)
                each.befalls(volume);
        }});
        EXPECT_THAT(inEnglish(result.faults), each.errors);
        EXPECT_EQ(result.deleted, 0);
    }
}

TEST_F(SyncBadDays, SourceCannotBeReadInTheMiddle) {
    LoopVolume volume(24 << 20);
    pair.source = volume / "source";
    write(from("a"), "1");
    write(from("c"), "3");
    write(from("bad"), std::string(10 << 20, 'n'));
    write(to("bad"), "old");
    volume.breakSecondHalf(from("bad"));
    EXPECT_THAT(inEnglish(run().faults),
                ElementsAre("bad: copy failed (errno 5, the disk could not be read or written)"));
    EXPECT_EQ(treeOf(pair.destination).size(), 3u) << "nothing half-written";
    EXPECT_EQ(readFile(to("bad")), "old");
    EXPECT_EQ(readFile(to("c")), "3");
}

TEST_F(SyncBadDays, NamesThatDifferInCaseAloneMeetADestinationThatDoesNotTellThem) {
    LoopVolume volume(16 << 20, LoopVolume::Kind::exfat);
    pair.destination = volume / "copy";
    fs::create_directory(pair.destination);
    write(from("A"), "first");
    write(from("a"), "second");
    write(from("Photos/One"), "1");
    write(from("photos/two"), "2");
    EXPECT_THAT(inEnglish(run().faults),
                ElementsAre(HasSubstr("a: differs from another name in upper and lower case")));
    for (int again = 0; again < 2; ++again) {
        const SyncPlan plan = SyncEngine::plan(pair);
        EXPECT_THAT(plan.actions, IsEmpty());
        EXPECT_THAT(inEnglish(plan.unreadable),
                    ElementsAre(HasSubstr("a: differs from “A” in upper and lower case")));
        SyncEngine::apply(plan, pair);
        EXPECT_EQ(readFile(to("A")), "first");
        EXPECT_EQ(readFile(to("photos/one")) + readFile(to("Photos/two")), "12");
    }
    fs::remove(from("a"));
    fs::remove_all(from("photos"));
    fs::rename(from("Photos"), from("PHOTOS"));
    EXPECT_THAT(SyncEngine::plan(pair).actions,
                ElementsAre(SyncAction{SyncAction::Kind::remove, "PHOTOS/two", 1}));
}

TEST_F(SyncBadDays, NameThatChangedItsCaseInASourceThatDoesNotTellThem) {
    LoopVolume volume(16 << 20, LoopVolume::Kind::exfat);
    pair.source = volume / "source";
    write(from("Foo"), "1");
    write(to("foo"), "1");
    EXPECT_THAT(inEnglish(run().faults), IsEmpty());
    EXPECT_TRUE(fs::exists(to("Foo")) && !fs::exists(to("foo")));
}

TEST_F(SyncBadDays, WhatTheTrashCannotTakeStays) {
    const vh::test::TmpfsMount volume(1 << 20);
    ASSERT_TRUE(volume) << "needs the right to mount";
    pair.destination = volume.path();
    write(to("extra"), "1");
    write(to(".Trash-" + std::to_string(::geteuid())), "is no folder");
    pair.deleteExtraneous = true;
    const SyncPlan plan{{{SyncAction::Kind::remove, "extra", 1}}};
    EXPECT_THAT(inEnglish(SyncEngine::apply(plan, pair).faults), ElementsAre(HasSubstr("extra: ")));
    EXPECT_EQ(readFile(to("extra")), "1");
}

TEST_F(SyncBadDays, WhatWasDeletedComesBackFromTheTrash) {
    write(to("extra/inner/file"), "1");
    write(to("other"), "2");
    const auto before = treeOf(pair.destination);
    std::map<std::string, std::string> landed;
    const SyncResult result = run({.ended = [&](const SyncEngine::Step& step) {
        landed[to(step.action.relativePath)] = step.landed.value();
    }});
    EXPECT_EQ(result.deleted, 2);
    EXPECT_TRUE(fs::is_empty(pair.destination));
    for (const auto& [path, inTrash] : landed)
        restoreFromTrash(inTrash, path);
    EXPECT_EQ(treeOf(pair.destination), before);
}

TEST_F(SyncBadDays, FileThatTheDestinationHasNoRoomForInOnePiece) {
    write(from("large"), std::string(2 << 20, 'n'));
    write(from("small"), "1");
    write(from("sparse"), "1");
    fs::resize_file(from("sparse"), 5 << 20);
    write(to("large"), "old");
    const auto before = ::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{1 << 20, limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const SyncResult result = run();
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::signal(SIGXFSZ, before);
    EXPECT_THAT(inEnglish(result.faults),
                ElementsAre("large: copy failed (errno 27, the file is too large for the volume)",
                            "sparse: copy failed (errno 27, the file is too large for the volume)"));
    EXPECT_EQ(readFile(to("large")), "old");
    EXPECT_EQ(treeOf(pair.destination).size(), 2u) << "nothing half-written";
}

TEST_F(SyncBadDays, PathsLongerThanASystemCallTakes) {
    const vh::test::TmpfsMount disk(1 << 20); // goes with all that is too deep to be removed by name
    ASSERT_TRUE(disk) << "needs the right to mount";
    pair.source = disk / "source";
    pair.destination = disk / "destination";
    fs::create_directory(pair.source);
    fs::create_directory(pair.destination);
    const std::string name(250, 'd');
    int inner = ::open(pair.source.c_str(), O_RDONLY | O_DIRECTORY);
    for (int depth = 0; depth < 20; ++depth) {
        ::mkdirat(inner, name.c_str(), 0700);
        const int next = ::openat(inner, name.c_str(), O_RDONLY | O_DIRECTORY);
        ::close(inner);
        inner = next;
    }
    ::close(::openat(inner, "file", O_WRONLY | O_CREAT, 0600));
    ::close(inner);
    const SyncResult result = run();
    EXPECT_THAT(inEnglish(result.faults), IsEmpty());
    EXPECT_EQ(result.copied, 1);
    EXPECT_TRUE(SyncEngine::plan(pair).isEmpty());
}

} // namespace vh::sync::test

#include "Platform/Files.h"
#include "Platform/SystemError.h"
#include "Tools/FolderSync/SyncFolders.h"
#include "support/FaultInjector.h"
#include "support/FileTree.h"
#include "support/SmallDisk.h"
#include "support/TempDir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace vh::sync::test {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using vh::test::treeOf;

class Sync : public SyncFolders {};

std::string accessListOf(const std::string& path) {
    std::string list(256, '\0');
    const ssize_t size = ::getxattr(path.c_str(), "system.posix_acl_access", list.data(), list.size());
    return list.substr(0, size > 0 ? static_cast<size_t>(size) : 0);
}

/// user::rw-, user:65534:r--, group::r--, mask::r--, other::---
const std::string accessList("\x02\0\0\0"
                             "\x01\0\x06\0\xff\xff\xff\xff"
                             "\x02\0\x04\0\xfe\xff\0\0"
                             "\x04\0\x04\0\xff\xff\xff\xff"
                             "\x10\0\x04\0\xff\xff\xff\xff"
                             "\x20\0\0\0\xff\xff\xff\xff",
                             44);

TEST_F(Sync, MakesTheDestinationTheSourceInEveryRespect) {
    vh::test::growTree(pair.source, 8 << 20);
    fs::create_symlink("not \xff there", from("inner/link"));
    fs::create_directory_symlink("inner", from("way in"));
    fs::create_hard_link(from("small.txt"), from("second name"));
    write(from("private/listed"), "1");
    ASSERT_EQ(::setxattr(from("private/listed").c_str(), "system.posix_acl_access", accessList.data(),
                         accessList.size(), 0),
              0);
    fs::permissions(from("private"), fs::perms(0500));
    write(from("folder now/file"), "new");
    write(from("file now"), "new");
    write(from(std::string(250, 'l')), "a name with no room for more");
    write(from(".DS_Store"), "stays here");
    for (const auto& [name, type] :
         {std::pair("pipe", S_IFIFO), {"inner/pipe", S_IFIFO}, {"inner/socket", S_IFSOCK}})
        ASSERT_EQ(::mknod(from(name).c_str(), type | 0600, 0), 0);
    write(to("file now/inner/old"), "old");
    write(to("extra/deep/old"), "old");
    write(to("photo.DS_Store"), "stays too");
    const SyncResult result = run();
    EXPECT_THAT(inEnglish(result.faults), IsEmpty());
    EXPECT_EQ(result.leftOut, (SyncLeftOut{.pipes = 2, .sockets = 1}));
    EXPECT_EQ(result.deleted, 2); // the folder that was in the way took one along
    const auto dated = fs::last_write_time(from("inner"));
    for (const char* name : {"pipe", "inner/pipe", "inner/socket", ".DS_Store"})
        fs::remove(from(name));
    fs::last_write_time(from("inner"), dated);
    fs::remove(to("photo.DS_Store"));
    auto source = treeOf(pair.source);
    EXPECT_EQ(treeOf(pair.destination), source);
    EXPECT_EQ(accessListOf(to("private/listed")), accessList);
    EXPECT_NE(fs::hard_link_count(from("small.txt")), fs::hard_link_count(to("small.txt")));
    struct stat sparse {};
    ::stat(to("inner/sparse").c_str(), &sparse);
    EXPECT_LT(sparse.st_blocks * 512, 1 << 20) << "holes stay holes";
    EXPECT_EQ(readFile(trash + "/file now/inner/old"), "old");
    EXPECT_EQ(readFile(trash + "/extra/deep/old"), "old");
    EXPECT_TRUE(SyncEngine::plan(pair).isEmpty());
}

TEST_F(Sync, RefusesFoldersThatAreMissingOrHoldEachOther) {
    fs::create_directories(from("inner"));
    fs::create_directories(folder / "source too");
    fs::create_directory_symlink(from("inner"), folder / "way in");
    const auto refusal = [&](const std::string& source, const std::string& destination) -> std::string {
        pair.source = source;
        pair.destination = destination;
        try {
            SyncEngine::plan(pair);
        } catch (const SyncError& error) {
            return error.what();
        }
        return {};
    };
    const std::string source = pair.source, nested = "Source and destination must not contain each other.";
    EXPECT_EQ(refusal(folder / "gone", source), "Folder not found: " + (folder / "gone"));
    EXPECT_EQ(refusal(source, folder / "gone"), "Folder not found: " + (folder / "gone"));
    EXPECT_EQ(refusal(source, source + "/"), nested);
    EXPECT_EQ(refusal(source, folder / "way in"), nested);
    EXPECT_EQ(refusal(folder / "way in", source), nested);
    EXPECT_EQ(refusal(source, folder / "source too"), "");
}

TEST_F(Sync, ComparesBytesWhereDatesDiffer) {
    for (const char* name : {"same", "other"}) {
        const std::string block(3 << 20, 'a');
        write(from(name), block);
        write(to(name), block);
        fs::last_write_time(to(name), fs::last_write_time(from(name)) - std::chrono::hours(1));
    }
    std::fstream(to("other"), std::ios::in | std::ios::out).seekp((3 << 20) - 1).put('b');
    fs::last_write_time(to("other"), fs::last_write_time(to("same")));
    EXPECT_EQ(SyncEngine::plan(pair).updates(), 2);
    pair.compareContents = true;
    const SyncPlan plan = SyncEngine::plan(pair);
    EXPECT_THAT(plan.actions, ElementsAre(SyncAction{SyncAction::Kind::update, "other", 3 << 20}));
    EXPECT_EQ(plan.unchanged, 1);
    EXPECT_FALSE(SyncEngine::fileEqual(from("same"), from("gone")));
}

TEST_F(Sync, NeverLeavesTheDestinationWhateverLiesThere) {
    write(from("inner/file"), "1");
    const std::string elsewhere = folder / "elsewhere";
    write(elsewhere + "/kept", "1");
    fs::create_directory_symlink(elsewhere, to("inner"));
    const SyncResult result = SyncEngine::apply({{{SyncAction::Kind::copy, "inner/file", 1},
                                                  {SyncAction::Kind::remove, "inner/kept", 1},
                                                  {SyncAction::Kind::remove, "../elsewhere/kept", 1},
                                                  {SyncAction::Kind::mkdir, "inner/made", 0},
                                                  {SyncAction::Kind::remove, "gone", 0}}},
                                                pair);
    EXPECT_THAT(inEnglish(result.faults),
                ElementsAre("inner/file: not a folder", "inner/kept: not a folder",
                            "../elsewhere/kept: leads out of the folder", "inner/made: not a folder",
                            "gone: no such file or folder"));
    EXPECT_EQ(treeOf(elsewhere).size(), 1u);
    EXPECT_EQ(result.copied + result.deleted, 0);
}

TEST_F(Sync, ReplacesNothingThatCameSinceThePlan) {
    write(from("file"), "1");
    fs::create_symlink("target", from("link"));
    const SyncPlan plan = SyncEngine::plan(pair);
    write(to("file"), "somebody's");
    write(to("link"), "somebody's");
    EXPECT_THAT(inEnglish(SyncEngine::apply(plan, pair).faults),
                ElementsAre("file: copy failed (errno 17, something is there already)",
                            "link: copy failed (errno 17, something is there already)"));
    for (const auto& [path, content] : treeOf(pair.destination))
        EXPECT_THAT(content, HasSubstr("somebody's")) << path;
}

TEST_F(Sync, RemovesNothingThatTheSourceHasByThen) {
    for (const char* name : {"back", "in/back", "gone", "pipe"})
        write(to(name), "old");
    fs::create_directory(from("in"));
    ASSERT_EQ(::mkfifo(from("pipe").c_str(), 0600), 0);
    const SyncPlan plan = SyncEngine::plan(pair);
    EXPECT_EQ(plan.deletes(), 4);
    write(from("back"), "1");
    write(from("in/back"), "1");
    const SyncResult result = SyncEngine::apply(plan, pair);
    EXPECT_THAT(inEnglish(result.faults), ElementsAre("back: is in the source by now, and stays",
                                                      "in/back: is in the source by now, and stays"));
    EXPECT_EQ(result.deleted, 2);
    EXPECT_TRUE(fs::exists(to("back")) && fs::exists(to("in/back")));
}

TEST_F(Sync, CarriesNothingOutInOtherFoldersThanThoseCompared) {
    for (std::string SyncPair::*const each : {&SyncPair::source, &SyncPair::destination}) {
        clear();
        write(to("extra"), "stays");
        const SyncPlan plan = SyncEngine::plan(pair);
        fs::rename(pair.*each, folder / "away");
        fs::create_directory(pair.*each);
        write(to("extra"), "stays");
        EXPECT_THROW(SyncEngine::apply(plan, pair), SystemError);
        EXPECT_TRUE(fs::exists(to("extra")));
        fs::remove_all(folder / "away");
    }
}

TEST_F(Sync, LeavesTheOldFileWhereTheNewOneChangesMeanwhile) {
    write(from("large"), std::string(9 << 20, 'n'));
    write(to("large"), "old");
    int asked = 0;
    const SyncResult result = run({.shouldContinue = [&] {
        if (++asked == 2)
            std::ofstream(from("large"), std::ios::app) << "more";
        return true;
    }});
    EXPECT_THAT(inEnglish(result.faults), ElementsAre("large: the source changed while it was copied"));
    EXPECT_EQ(readFile(to("large")), "old");
    EXPECT_EQ(treeOf(pair.destination).size(), 1u);
}

TEST_F(Sync, StopsBetweenActionsAndInsideALargeFile) {
    write(from("a"), "1");
    write(from("large"), std::string(9 << 20, 'n'));
    for (const int stopAt : {2, 3}) {
        clear();
        write(from("a"), "1");
        write(from("large"), std::string(9 << 20, 'n'));
        int asked = 0;
        std::vector<std::pair<int64_t, int64_t>> steps;
        const SyncResult result = run({[&](int64_t done, int64_t total) { steps.emplace_back(done, total); },
                                       [&] {
                                           return ++asked < stopAt;
                                       }});
        EXPECT_TRUE(result.stopped);
        EXPECT_EQ(result.copied, 1);
        EXPECT_THAT(steps, ElementsAre(std::pair<int64_t, int64_t>(1, 2)));
        EXPECT_EQ(treeOf(pair.destination).size(), 1u) << "nothing half-written";
    }
}

TEST_F(Sync, GoesOnWhereTheDestinationIsFull) {
    write(from("large"), std::string(4 << 20, 'n'));
    write(from("small"), "new");
    const vh::test::TmpfsMount full(1 << 20);
    ASSERT_TRUE(full) << "needs the right to mount";
    pair.destination = full.path();
    write(to("extra"), "goes to the Trash of that volume");
    const SyncResult result = run();
    EXPECT_THAT(inEnglish(result.faults),
                ElementsAre("large: copy failed (errno 28, no space is left on the volume)"));
    EXPECT_EQ(readFile(to("small")), "new");
    EXPECT_TRUE(fs::exists(to(".Trash-" + std::to_string(::geteuid()) + "/files/extra")));
    EXPECT_THAT(SyncEngine::plan(pair).actions,
                ElementsAre(SyncAction{SyncAction::Kind::copy, "large", 4 << 20}));
}

TEST_F(Sync, LeavesOldOrNewWholeItemsWhateverFails) {
    const auto setUp = [&] {
        clear();
        write(from("file"), "new file");
        write(from("made/inner"), "new inner");
        write(from("was folder"), "new");
        fs::create_symlink("new target", from("link"));
        write(to("file"), "old");
        write(to("was folder/old"), "old");
        write(to("extra"), "old");
        fs::create_symlink("old target", to("link"));
    };
    setUp();
    SyncPlan plan = SyncEngine::plan(pair);
    plan.roots.reset(); // both folders are made anew each time
    const auto isWhole = [&] {
        EXPECT_THAT(readFile(to("file")), testing::AnyOf("old", "new file"));
        EXPECT_THAT(readFileIfPresent(to("made/inner")).value_or("new inner"), "new inner");
        EXPECT_THAT(fs::read_symlink(to("link")).string(), testing::AnyOf("old target", "new target"));
        EXPECT_TRUE(fs::exists(to("extra")) || fs::exists(trash + "/extra"));
        EXPECT_TRUE(fs::exists(to("was folder/old")) || fs::exists(trash + "/was folder/old")) << "whole";
        if (fs::is_regular_file(to("was folder"))) {
            EXPECT_EQ(readFile(to("was folder")), "new");
        }
    };
    SyncResult result;
    vh::test::forEachFault(
        setUp, [&] { result = SyncEngine::apply(plan, pair); },
        [&](const vh::test::FaultPoint& fault) {
            isWhole();
            for (const auto& [path, content] : treeOf(pair.destination))
                EXPECT_TRUE(!path.ends_with(".vhsync-tmp") || fault.what.group == vh::test::CallGroup::remove)
                    << path;
            if (!fault.thrown && result.faults.empty()) {
                EXPECT_EQ(treeOf(pair.destination), treeOf(pair.source));
            }
        });
    vh::test::forEachKill(
        setUp, [&] { SyncEngine::apply(plan, pair); },
        [&](const vh::test::FaultPoint&) {
            isWhole();
            EXPECT_THAT(inEnglish(run().faults), IsEmpty());
            auto source = treeOf(pair.source), destination = treeOf(pair.destination);
            source.erase("made"), destination.erase("made"); // its dates, when it was made before the kill
            EXPECT_EQ(destination, source);
        });
}

} // namespace vh::sync::test

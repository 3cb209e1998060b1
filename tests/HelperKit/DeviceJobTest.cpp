#include "Core/ContentHash.h"
#include "HelperKit/DeviceImage.h"
#include "HelperKit/DeviceJobRunner.h"
#include "HelperKit/HelperServiceError.h"
#include "HelperKit/ImagePath.h"
#include "Platform/Files.h"
#include "Platform/Process.h"
#include "support/FaultInjector.h"
#include "support/LoopDisk.h"
#include "support/SmallDisk.h"
#include "support/WaitUntil.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vh::helper {

namespace fs = std::filesystem;
using test::LoopDisk;
using testing::HasSubstr;

namespace {

constexpr uint32_t root = 0;
constexpr uint32_t games = 5; ///< a user that every system has

std::string contentOf(size_t bytes) {
    std::string content(bytes, '\0');
    uint64_t state = 1;
    for (char& each : content)
        each = static_cast<char>((state = state * 6364136223846793005u + 1442695040888963407u) >> 56);
    return content;
}

std::string sha256Of(const std::string& path) {
    return LoopDisk::run({"openssl", "dgst", "-sha256", "-r", path}).substr(0, 64);
}

/// A disk, and a folder in which the user `games` may write.
class DeviceJob : public testing::Test {
protected:
    DeviceJob() {
        ContentHash(HashAlgorithm::sha256); // what it reads when first used is none of the disk's calls
        fs::permissions(folder.path(), fs::perms(0755));
        fs::create_directory(folder / "theirs");
        EXPECT_EQ(::chown((folder / "theirs").c_str(), games, games), 0) << "needs root";
    }
    DeviceJobSpec spec(const std::string& destination) const {
        return {DeviceJobKind::image, disk.device(), destination};
    }
    std::string refusal(const DeviceJobSpec& asked, uint32_t owner) {
        try {
            runner.start(asked, owner, ":1.1");
        } catch (const HelperServiceError& error) {
            return error.what();
        }
        return "started";
    }
    DeviceJobStatus endOf(const std::string& id) {
        test::waitUntil("the job is over", [&] { return runner.status(id, games).isOver(); });
        return runner.status(id, games);
    }

    const std::string content = contentOf((9 << 20) + 512);
    const LoopDisk disk{content};
    test::TempDir folder;
    const std::string image = folder / "theirs/disk.img";
    DeviceJobRunner runner;
};

} // namespace

TEST_F(DeviceJob, MakesAnImageThatBelongsToWhoAsked) {
    const std::string id = runner.start(spec(image), games, ":1.1");
    const DeviceJobStatus status = endOf(id);
    EXPECT_EQ(status.phase, DeviceJobPhase::done) << status.error;
    EXPECT_EQ(status.bytesDone, static_cast<int64_t>(content.size()));
    EXPECT_EQ(status.badBlocks, 0);
    EXPECT_TRUE(readFile(image) == content);
    EXPECT_EQ(status.sha256, sha256Of(image));
    EXPECT_EQ(statusOf(image)->owner, games);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "theirs"), {}), 1);
    EXPECT_THROW(static_cast<void>(runner.status("another", games)), HelperServiceError);
    EXPECT_THROW(static_cast<void>(runner.status(id, games + 1)), HelperServiceError);
    EXPECT_NO_THROW(WholeDisk{disk.device()}) << "it is held no longer";
}

TEST_F(DeviceJob, CountsWhatCannotBeReadAndPutsZerosThere) {
    DeviceImage job(spec(image), games);
    const size_t firstBlock = 4u << 20;
    EXPECT_TRUE(test::runWithBadMedium(1, [&] { job.make({}); }));
    const DeviceJobStatus status = job.status();
    EXPECT_EQ(status.phase, DeviceJobPhase::done) << status.error;
    const size_t rest = content.size() - firstBlock;
    EXPECT_EQ(status.badBlocks, static_cast<int64_t>((rest + 4095) / 4096));
    EXPECT_TRUE(readFile(image) == content.substr(0, firstBlock) + std::string(rest, '\0'));
    EXPECT_EQ(status.sha256, sha256Of(image));
    EXPECT_LE(status.log.size(), 200u);
}

TEST_F(DeviceJob, GoesOnPastABlockThatCanBeReadTheSecondTime) {
    DeviceImage job(spec(image), games);
    EXPECT_TRUE(test::runWithFault(1, EIO, [&] { job.make({}); }));
    EXPECT_EQ(job.status().badBlocks, 0);
    EXPECT_TRUE(readFile(image) == content);
}

TEST_F(DeviceJob, RefusesWhatIsNoWholeUnusedDisk) {
    writeFileAtomically(folder / "file", "no disk");
    LoopDisk::run({"mkfs.ext4", "-q", disk.device()});
    fs::create_directory(folder / "mounted");
    LoopDisk::run({"mount", disk.device(), folder / "mounted"});
    EXPECT_EQ(refusal(spec(image), root),
              "Bad device job: " + disk.device() + " is mounted at " + (folder / "mounted"));
    LoopDisk::run({"umount", folder / "mounted"});
    {
        const WholeDisk held(disk.device());
        EXPECT_THAT(refusal(spec(image), root), HasSubstr("busy"));
    }
    DeviceJobSpec other = spec(image);
    for (const auto& [device, why] : std::map<std::string, std::string>{{folder / "file", "is not a disk"},
                                                                        {"/dev/null", "is not a disk"},
                                                                        {"/dev/none", "No such file"}}) {
        other.device = device;
        EXPECT_THAT(refusal(other, root), HasSubstr(why));
    }
    EXPECT_FALSE(fs::exists(image));
}

TEST_F(DeviceJob, WritesOnlyWhereThePersonMay) {
    EXPECT_EQ(refusal(spec(folder / "not-theirs.img"), games),
              "Bad device job: " + (folder / "not-theirs.img") + ": Permission denied");
    writeFileAtomically(image, "mine");
    EXPECT_EQ(refusal(spec(image), games), "Bad device job: " + image + " exists already");
    // Not even for root, whose rights would let it write there.
    fs::create_directory(folder / "victim");
    fs::create_directory_symlink(folder / "victim", folder / "theirs/way");
    for (const uint32_t user : {games, root})
        EXPECT_THAT(refusal(spec(folder / "theirs/way/x.img"), user), HasSubstr("link that is not followed"));
    fs::create_symlink(folder / "victim/y.img", folder / "theirs/y.img");
    EXPECT_THAT(refusal(spec(folder / "theirs/y.img"), games), HasSubstr("exists already"));
    EXPECT_TRUE(fs::is_empty(folder / "victim"));
    EXPECT_EQ(::getuid(), root);
    writeFileAtomically(folder / "still-root", ""); // this thread has its rights back
}

TEST_F(DeviceJob, LeavesNothingWhenItIsStoppedOrTheDiskIsFull) {
    const std::string id = runner.start(spec(image), games, ":1.7");
    runner.cancelAllOf(":1.7");
    const DeviceJobStatus stopped = endOf(id);
    EXPECT_TRUE(stopped.phase == DeviceJobPhase::cancelled || stopped.phase == DeviceJobPhase::done);
    EXPECT_EQ(fs::exists(image), stopped.phase == DeviceJobPhase::done);
    EXPECT_FALSE(runner.cancel(id, games));

    const test::TmpfsMount small(10 << 20);
    ASSERT_TRUE(small);
    DeviceImage filling(spec(small / "disk.img"), root);
    const size_t taken = 5 << 20;
    writeFileAtomically(small / "meanwhile", std::string(taken, 'x'));
    filling.make({});
    EXPECT_EQ(filling.status().phase, DeviceJobPhase::failed);
    EXPECT_THAT(filling.status().error, HasSubstr("No space left"));
    EXPECT_EQ(std::distance(fs::directory_iterator(small.path()), {}), 1);
    EXPECT_THAT(refusal(spec(small / "disk.img"), root), HasSubstr("has room for"));
}

TEST(ImagePath, LiesInAHomeOnAVolumeOrInATemporaryFolder) {
    struct Case {
        const char* path;
        bool onLinux, onMac;
    };
    for (const Case& each : {Case{"/home/ana/d.img", true, false}, Case{"/root/d.img", true, true},
                             Case{"/mnt/a/d.img", true, false}, Case{"/Volumes/X/d.img", false, true},
                             Case{"/tmp/../etc/passwd", false, false}, Case{"/etc/d.img", false, false},
                             Case{"/tmp/", false, false}, Case{"tmp/d.img", false, false}}) {
        EXPECT_EQ(isImagePath(each.path, "/root", MaintenanceSystem::linux), each.onLinux) << each.path;
        EXPECT_EQ(isImagePath(each.path, "/root", MaintenanceSystem::macos), each.onMac) << each.path;
    }
}

} // namespace vh::helper

#include "Platform/WholeDisks.h"

#include "Platform/Linux/BlockDevices.h"
#include "Platform/Linux/DiskList.h"
#include "Platform/Posix/DiskUtility.h"
#include "Platform/RecordedMachine.h"
#include "Platform/Volumes.h"
#include "support/LoopDisk.h"
#include "support/LoopVolume.h"

#include <algorithm>
#include <fmt/ranges.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

using namespace vh;
using namespace vh::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace vh {
void PrintTo(const DiskFacts& disk, std::ostream* out) {
    *out << fmt::format("{} {} “{}” {} mounted {} removable {} system {} {} {} {}", disk.bsdName, disk.device,
                        disk.name, disk.bytes, disk.isMounted, disk.isRemovable, disk.holdsSystem,
                        disk.mountPoints, disk.users, disk.parts);
}
} // namespace vh

namespace {

constexpr int64_t sectors = 2048, bytes = sectors * 512;

TEST(WholeDisks, areThoseWithAMediumAndSayWhatTheyAreUsedFor) {
    RecordedMachine machine;
    const std::string nvme = "pci0000:00/nvme/nvme0/nvme0n1", usb = "pci0000:00/usb2/2-1/host6/block/sdb",
                      ata = "pci0000:00/ata1/host0/block/sda", card = "platform/mmc0/mmc0:0001/block/mmcblk0",
                      dm = "virtual/block/dm-0";
    machine.addDisk("259:0", nvme, sectors, "E:ID_MODEL=WD_Blue\nE:ID_MODEL_ENC=WD\\x20Blue\\x20\n");
    machine.addPart("259:1", nvme, "nvme0n1p1", "E:ID_FS_LABEL_ENC=EFI\n");
    machine.addPart("259:2", nvme, "nvme0n1p2");
    machine.addDisk("254:0", dm, sectors); // the encrypted root
    machine.link("../../../../../../" + dm, "sys/devices/" + nvme + "/nvme0n1p2/holders/dm-0");
    machine.link("../../../../" + nvme + "/nvme0n1p2", "sys/devices/" + dm + "/slaves/nvme0n1p2");
    machine.addDisk("8:16", usb, sectors);
    machine.addPart("8:17", usb, "sdb1", "E:ID_FS_LABEL_ENC=Photos\n");
    machine.write("sys/devices/" + usb + "/device/vendor", "SanDisk \n");
    machine.write("sys/devices/" + usb + "/device/model", "Ultra           \n");
    machine.addDisk("8:0", ata, sectors);
    machine.addPart("8:1", ata, "sda1", "E:ID_FS_LABEL_ENC=Old\\x20disk\n");
    machine.write("sys/devices/" + ata + "/device/vendor", "0x1af4\n");
    machine.write("proc/swaps", "Filename\tType\tSize\n/dev/swap partition\t1 0 -2\n/swapfile file 1 0 -3\n");
    std::filesystem::create_directories(machine.root() + "/dev");
    ASSERT_EQ(::mknod((machine.root() + "/dev/swap").c_str(), S_IFBLK | 0600, makedev(8, 1)), 0)
        << "needs the right to make devices";
    machine.addDisk("179:0", card, sectors);
    machine.write("sys/devices/" + card + "/device/name", "SD64G\n");
    machine.write("sys/devices/" + card + "/removable", "1\n");
    machine.addDisk("179:8", card + "/mmcblk0boot0", sectors);
    machine.addDisk("8:32", "pci0000:00/usb2/2-2/host7/block/sdc", 0); // a reader without a card
    machine.addDisk("11:0", "pci0000:00/ata2/host1/block/sr0", sectors);
    machine.addDisk("11:1", "pci0000:00/ata2/host1/block/sr1", sectors, "E:ID_CDROM_MEDIA=1\n");
    machine.addDisk("7:0", "virtual/block/loop0", sectors);
    machine.addDisk("7:1", "virtual/block/loop1", sectors);
    machine.write("sys/devices/virtual/block/loop1/loop/backing_file", "/home/ana/disk.img\n");
    machine.addDisk("253:0", "virtual/block/zram0", sectors);

    const auto mounts = parseMountInfo("1 0 254:0 / / rw - ext4 /dev/mapper/root rw\n"
                                       "2 1 259:1 / /boot/efi rw - vfat /dev/nvme0n1p1 rw\n"
                                       "3 1 8:17 / /media/ana/My\\040Photos rw - vfat /dev/sdb1 rw\n"
                                       "4 1 0:40 / /tmp rw - tmpfs tmpfs rw\n");
    using Texts = std::vector<std::string>;
    const auto disk = [](const char* name, const char* title) {
        return DiskFacts{name, std::string("/dev/") + name, title, bytes};
    };
    DiskFacts loop = disk("loop1", "loop1"), cardDisk = disk("mmcblk0", "SD64G"),
              system = disk("nvme0n1", "WD Blue"), swap = disk("sda", "Old disk"),
              stick = disk("sdb", "SanDisk Ultra"), disc = disk("sr1", "sr1");
    loop.isRemovable = cardDisk.isRemovable = stick.isRemovable = true;
    system.isMounted = system.holdsSystem = stick.isMounted = true;
    system.mountPoints = {"/boot/efi", "/"};
    system.users = {"dm-0"};
    system.parts = {"/dev/nvme0n1p1", "/dev/nvme0n1p2"};
    swap.users = {"swap"};
    swap.parts = {"/dev/sda1"};
    stick.mountPoints = Texts{"/media/ana/My Photos"};
    stick.parts = {"/dev/sdb1"};
    EXPECT_THAT(disksAmong(BlockDevices(machine.root()), mounts),
                ElementsAre(loop, cardDisk, system, swap, stick, disc));
}

TEST(WholeDisks, shareTheMountsOfAFileSystemOfSeveral) {
    RecordedMachine machine;
    machine.addDisk("8:0", "pci/ata1/sda", sectors);
    machine.addDisk("8:16", "pci/ata2/sdb", sectors);
    machine.addPart("8:17", "pci/ata2/sdb", "sdb1");
    machine.addDisk("8:32", "pci/ata3/sdc", sectors);
    machine.link("../../../../devices/pci/ata1/sda", "sys/fs/btrfs/1f0c/devices/sda");
    machine.link("../../../../devices/pci/ata2/sdb/sdb1", "sys/fs/btrfs/1f0c/devices/sdb1");
    std::filesystem::create_directories(machine.root() + "/dev");
    ASSERT_EQ(::mknod((machine.root() + "/dev/sda").c_str(), S_IFBLK | 0600, makedev(8, 0)), 0)
        << "needs the right to make devices";
    const BlockDevices devices(machine.root());
    const auto mounts = parseMountInfo("1 0 0:41 / /usr rw - btrfs /dev/sda rw\n"
                                       "2 1 8:32 / /data rw - ext4 /dev/sdc rw\n"
                                       "3 1 0:42 / /data rw - tmpfs tmpfs rw\n");
    for (const DiskFacts& disk : disksAmong(devices, mounts)) {
        const bool isMember = disk.bsdName != "sdc";
        EXPECT_THAT(disk.mountPoints, ElementsAre(isMember ? "/usr" : "/data")) << disk.bsdName;
        EXPECT_EQ(disk.holdsSystem, isMember);
        const auto own = mountsOf(disk.bsdName, devices, mounts);
        ASSERT_EQ(own.size(), 1u) << "not what lies over it";
        EXPECT_EQ(own.front().id, isMember ? 1u : 2u);
    }
}

TEST(WholeDisks, leaveAloneWhatIsMountedOverThem) {
    const LoopVolume volume(8 << 20);
    const auto disks = wholeDisks();
    const auto disk = std::ranges::find_if(
        disks, [&](const DiskFacts& each) { return each.mountPoints == std::vector{volume.path()}; });
    ASSERT_NE(disk, disks.end());
    LoopDisk::run({"mount", "-t", "tmpfs", "none", volume.path()});
    EXPECT_THAT([&] { unmountDisk(*disk); },
                testing::ThrowsMessage<std::runtime_error>(HasSubstr("something else is mounted over it")));
    LoopDisk::run({"umount", volume.path()});
    unmountDisk(*disk);
    EXPECT_NE(mountPointOf(volume.path()), volume.path());
}

TEST(WholeDisks, areUnmountedByWhoeverMay) {
    const MountEntry stick{.path = "/media/ana/-x", .source = "/dev/null"},
        share{.path = "/m", .source = "nas"};
    EXPECT_THAT(unmountCommand(stick, false, true),
                ElementsAre("udisksctl", "unmount", "--block-device", "/dev/null"));
    for (const auto& words : {unmountCommand(stick, true, true), unmountCommand(stick, false, false)})
        EXPECT_THAT(words, ElementsAre("umount", "--", "/media/ana/-x"));
    EXPECT_THAT(unmountCommand(share, false, true), ElementsAre("umount", "--", "/m"));

    DiskFacts system{"none", "/dev/none", "None", bytes};
    system.holdsSystem = true;
    EXPECT_THAT([&] { unmountDisk(system); },
                testing::ThrowsMessage<std::runtime_error>(HasSubstr("running system")));
}

TEST(WholeDisks, ofAMacAreReadFromWhatItsDiskUtilityTells) {
    const char* list = R"({"AllDisksAndPartitions": [
        {"DeviceIdentifier": "disk0", "Size": 500277792768, "Content": "GUID_partition_scheme", "Partitions": [
            {"DeviceIdentifier": "disk0s1", "Size": 524288000},
            {"DeviceIdentifier": "disk0s2", "Size": 494384795648}]},
        {"DeviceIdentifier": "disk3", "Size": 494384795648, "APFSPhysicalStores": [{"DeviceIdentifier": "disk0s2"}],
         "APFSVolumes": [
            {"DeviceIdentifier": "disk3s1", "VolumeName": "Macintosh HD",
             "MountedSnapshots": [{"SnapshotMountPoint": "/"}]},
            {"DeviceIdentifier": "disk3s5", "MountPoint": "/System/Volumes/Data"}]},
        {"DeviceIdentifier": "disk4", "Size": 30752636928, "Partitions": [
            {"DeviceIdentifier": "disk4s1", "VolumeName": "PHOTOS", "MountPoint": "/Volumes/PHOTOS"}]},
        {"DeviceIdentifier": "disk5", "Size": 0}]})";
    const auto disks = diskUtility::disksIn(list, [](const std::string& disk) {
        return std::string(disk == "disk0" ? R"({"MediaName": "APPLE SSD AP0512Q ", "Internal": true})"
                                           : R"({"MediaName": "", "RemovableMediaOrExternalDevice": true})");
    });
    EXPECT_THAT(disks, ElementsAre(DiskFacts{"disk0",
                                             "/dev/disk0",
                                             "APPLE SSD AP0512Q",
                                             500277792768,
                                             true,
                                             false,
                                             true,
                                             {"/", "/System/Volumes/Data"},
                                             {},
                                             {"/dev/disk0s1", "/dev/disk0s2"}},
                                   DiskFacts{"disk4",
                                             "/dev/disk4",
                                             "PHOTOS",
                                             30752636928,
                                             true,
                                             true,
                                             false,
                                             {"/Volumes/PHOTOS"},
                                             {},
                                             {"/dev/disk4s1"}}));
    EXPECT_TRUE(diskUtility::disksIn("not json", {}).empty());
}

} // namespace

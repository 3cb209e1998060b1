#include "Platform/Folders.h"
#include "Platform/Host.h"
#include "Platform/Linux/AssignmentFile.h"
#include "Platform/Linux/MappedNames.h"
#include "Platform/Linux/VolumeChoice.h"
#include "Platform/OpenFiles.h"
#include "Platform/Process.h"
#include "Platform/Random.h"
#include "Platform/SystemError.h"
#include "support/SmallDisk.h"

#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

using namespace vh;
using namespace vh::test;
using testing::ElementsAre;
namespace fs = std::filesystem;

namespace {

/// Sets variables for one scope; nothing unsets.
class Environment {
public:
    explicit Environment(std::map<std::string, std::optional<std::string>> values) {
        for (const auto& [name, value] : values) {
            const char* old = ::getenv(name.c_str());
            before_[name] = old != nullptr ? std::optional<std::string>(old) : std::nullopt;
            set(name, value);
        }
    }
    ~Environment() {
        for (const auto& [name, value] : before_)
            set(name, value);
    }

private:
    static void set(const std::string& name, const std::optional<std::string>& value) {
        value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
    }
    std::map<std::string, std::optional<std::string>> before_;
};

constexpr auto unset = std::nullopt;

TEST(Folders, followTheBaseDirectoryRules) {
    const Environment plain({{"HOME", "/home/ana/"},
                             {"XDG_CACHE_HOME", unset},
                             {"XDG_STATE_HOME", unset},
                             {"XDG_DATA_HOME", "relative/data"},
                             {"XDG_CONFIG_HOME", "/etc/./ana//"},
                             {"XDG_RUNTIME_DIR", unset},
                             {"TMPDIR", "/var/../scratch/"}});
    const Folders folders = Folders::ofUser();
    EXPECT_EQ(folders.home, "/home/ana");
    EXPECT_EQ(folders.caches, "/home/ana/.cache");
    EXPECT_EQ(folders.logs, "/home/ana/.local/state");
    EXPECT_EQ(folders.data, "/home/ana/.local/share");
    EXPECT_EQ(folders.config, "/etc/ana");
    EXPECT_EQ(folders.temporary, "/scratch");
    EXPECT_EQ(folders.runtime, "/scratch/varnholt-" + std::to_string(::geteuid()));
    // Of another user's things this process's environment says nothing.
    const Folders others = Folders::ofUser(0);
    EXPECT_NE(others.home, folders.home);
    EXPECT_EQ(others.data, others.home + "/.local/share");
    EXPECT_EQ(others.temporary, "/tmp");
    EXPECT_THROW(Folders::ofUser(0xFFFFFFF0), SystemError);

    const Environment bare({{"HOME", unset}, {"TMPDIR", "tmp"}, {"XDG_RUNTIME_DIR", "/run/user/1"}});
    EXPECT_TRUE(Folders::ofUser().home.starts_with('/')) << "from the user database";
    EXPECT_EQ(Folders::ofUser().temporary, "/tmp");
    EXPECT_EQ(Folders::ofUser().runtime, "/run/user/1");
}

TEST(Host, readsAssignmentsAsAShellDoes) {
    const std::string text =
        "# comment\nNAME=first\nPRETTY_NAME=\"A \\\"quoted\\\" name\" \r\nNAME='it''s'\nX=a\\ b";
    EXPECT_EQ(assignedValue(text, "PRETTY_NAME"), "A \"quoted\" name");
    EXPECT_EQ(assignedValue(text, "NAME"), "its");
    EXPECT_EQ(assignedValue(text, "X"), "a b");
    EXPECT_EQ(assignedValue(text, "PRETTY"), "");
}

TEST(Host, describesThisMachine) {
    EXPECT_FALSE(hostName().empty());
    EXPECT_FALSE(systemName().empty());
    EXPECT_EQ(systemName().find('('), std::string::npos);
    EXPECT_GT(uptime().count(), 0);
    std::array<std::byte, 600> first{};
    std::array<std::byte, 600> second{};
    fillRandom(first);
    fillRandom(second);
    EXPECT_NE(first, second);
    EXPECT_FALSE(std::equal(first.begin() + 512, first.end(), std::array<std::byte, 88>{}.begin()));
}

TEST(Host, takesTheLanguageFromTheEnvironment) {
    using Row = std::tuple<std::optional<std::string>, std::optional<std::string>, std::string>;
    for (const auto& [lang, all, language] :
         {Row{"es_ES.UTF-8", unset, "es"}, Row{"es_ES", "fr_FR@euro", "fr"}, Row{"C.UTF-8", unset, "en"},
          Row{unset, unset, "en"}}) {
        const Environment environment(
            {{"LANG", lang}, {"LC_ALL", all}, {"LANGUAGE", unset}, {"LC_MESSAGES", unset}});
        EXPECT_EQ(preferredLanguage(), language);
    }
}

const char* const recordedMounts =
    "27 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw,discard\n"
    "22 27 0:21 / /proc rw,nosuid shared:5 master:2 - proc proc rw\n"
    "30 27 8:17 / /media/ana/My\\040Disk\\134\\011x ro,nosuid - vfat /dev/sdb1 rw\n"
    "31 27 254:0 /home/ana /mnt/bind rw - ext4 /dev/vda rw\n"
    "32 27 7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro\n"
    "33 27 0:40 / /tmp rw - tmpfs tmpfs rw\n"
    "34 27 8:1 / /boot/efi rw - vfat /dev/sda1 rw\n"
    "35 27 0:50 / /home/ana/server rw propagate_from:1 unbindable - fuse.sshfs ana@host:/ ro\n"
    "36 27 0:51 / /run/user/1000/doc rw - fuse.portal portal rw\n"
    "37 27 0:52 / /var/lib/docker/x rw - overlay overlay rw\n"
    "not a mount\n"
    "38 27 8:33 / /covered rw - ext4 /dev/sdc1 rw\n"
    "39 38 8:34 / /covered rw - ext4 /dev/sdc2 rw\n";

TEST(Volumes, readTheMountTableOfTheKernel) {
    const std::vector<MountEntry> table = parseMountInfo(recordedMounts);
    ASSERT_EQ(table.size(), 12u);
    EXPECT_EQ(table[0].id, 27u);
    EXPECT_EQ(table[0].device, makedev(254, 0));
    EXPECT_FALSE(table[0].readOnly);
    EXPECT_EQ(table[2].path, "/media/ana/My Disk\\\tx");
    EXPECT_TRUE(table[2].readOnly);
    EXPECT_EQ(table[3].root, "/home/ana");
    EXPECT_EQ(table[7].source, "ana@host:/");
    EXPECT_TRUE(table[7].readOnly) << "the file system itself is";
}

TEST(Volumes, chooseWhatHoldsAPersonsFiles) {
    std::vector<std::string> devices;
    for (const MountEntry& entry : entriesForPeople(parseMountInfo(recordedMounts)))
        devices.push_back(entry.source);
    EXPECT_THAT(devices, ElementsAre("/dev/vda", "/dev/sdc2", "ana@host:/", "/dev/sdb1"));
    const auto container = parseMountInfo("1 0 0:30 / / rw - overlay overlay rw\n");
    EXPECT_EQ(entriesForPeople(container).size(), 1u) << "the root counts whatever it is";
    EXPECT_EQ(labelOfLinkName("My\\x20Disk\\x2fé\\x2"), "My Disk/é\\x2");
}

TEST(Volumes, knowThisMachinesMounts) {
    const std::vector<Volume> volumes = mountedVolumes();
    ASSERT_FALSE(volumes.empty());
    EXPECT_EQ(volumes[0].path, "/");
    EXPECT_EQ(volumes[0].name, "System");
    EXPECT_GT(volumes[0].totalBytes, volumes[0].freeBytes);
    EXPECT_EQ(mountPointOf("/"), "/");
    EXPECT_EQ(mountPointOf("/proc/self"), "/proc");
    const TempDir folder;
    const TmpfsMount disk(1 << 20);
    ASSERT_TRUE(disk) << "needs the right to mount";
    fs::create_directory(disk / "sub");
    fs::create_symlink(disk / "sub", folder / "link");
    EXPECT_EQ(mountPointOf(folder / "link/missing"), disk.path());
    EXPECT_NE(mountPointOf(disk.path() + "x"), disk.path()) << "only begins with the same letters";
}

TEST(OpenFiles, areFoundThroughEveryKindOfHold) {
    const TempDir folder;
    for (const char* name : {"open", "stood/deeper", "mapped", "heard", "nobody's"})
        fs::create_directories(folder / name);
    for (const char* name : {"open/file", "mapped/line\nend", "gone", "top file"})
        std::ofstream(folder / name) << "text";
    EXPECT_TRUE(childrenInUse(folder.path()).empty());

    const int open = ::open((folder / "open/file").c_str(), O_RDONLY);
    const int deleted = ::open((folder / "gone").c_str(), O_RDONLY);
    fs::remove(folder / "gone");
    const int mapped = ::open((folder / "mapped/line\nend").c_str(), O_RDONLY);
    void* const memory = ::mmap(nullptr, 4, PROT_READ, MAP_PRIVATE, mapped, 0);
    ::close(mapped);
    const int server = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{.sun_family = AF_UNIX};
    const std::string socketPath = folder / "heard/at";
    ASSERT_LT(socketPath.size(), sizeof(address.sun_path));
    std::ranges::copy(socketPath, address.sun_path);
    ASSERT_EQ(::bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    std::set<std::string> found;
    ProcessRequest other{.arguments = {"sh", "-c", "echo; cat"}, .folder = folder / "stood/deeper"};
    other.timeLimit = std::chrono::milliseconds(5000);
    const CancelToken cancel;
    other.arguments.back() = "echo; exec sleep 1000";
    other.onOutput = [&](std::string_view) {
        found = childrenInUse(folder.path());
        cancel.cancel();
    };
    EXPECT_EQ(runProcess(other, cancel).end, ProcessEnd::cancelled);
    ::munmap(memory, 4);
    ::close(open);
    ::close(deleted);
    ::close(server);
    EXPECT_THAT(found, ElementsAre("heard", "mapped", "open", "stood"));
}

TEST(OpenFiles, readMapsByWholeComponents) {
    std::set<std::string> names;
    addMappedNames("7f00-7f01 r--p 0 08:01 12   /home/a/lib/one.so\n"
                   "7f01-7f02 r--p 0 08:01 13   /home/a/gone/x (deleted)\n"
                   "7f02-7f03 r--p 0 08:01 14   /home/ab/other\n"
                   "7f03-7f04 r--p 0 08:01 15   /x/home/a/other\n"
                   "7f03-7f04 r--p 0 08:01 15   /home/a/two words",
                   "/home/a/", names);
    EXPECT_THAT(names, ElementsAre("lib", "two words"));
}

} // namespace

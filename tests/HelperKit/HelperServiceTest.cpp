#include "HelperKit/HelperProtocol.h"
#include "HelperKit/HelperServiceError.h"
#include "HelperKit/OutsideSandbox.h"
#include "HelperKit/PeerScopedHelper.h"
#include "Platform/GuardedFolder.h"
#include "support/TempDir.h"
#include "support/WaitUntil.h"

#include <fstream>
#include <future>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vh::helper {

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

constexpr uint32_t ana = 1000;

void put(const std::string& path) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << "12345";
}

/// A helper over a scratch folder, and a peer that calls it.
class Peer {
public:
    test::TempDir folder;
    std::string chore = "true"; ///< what the shell does for the root tasks
    PeerScopedHelper helper{dependencies()};

    std::future<ServiceReply> begin(const ServiceMethod& method, ServiceValues arguments,
                                    uint32_t user = ana) {
        ServiceCall call{method, {user, 1, ":1.1"}, std::move(arguments)};
        auto promise = std::make_shared<std::promise<ServiceReply>>();
        if (const auto refusal = helper.check(call))
            promise->set_value(*refusal);
        else
            helper.perform(call, [promise](ServiceReply reply) { promise->set_value(std::move(reply)); });
        return promise->get_future();
    }
    /// The refusal as "code: text", or what was answered.
    std::string call(const ServiceMethod& method, ServiceValues arguments, uint32_t user = ana) {
        const ServiceReply reply = begin(method, std::move(arguments), user).get();
        if (const auto* refusal = std::get_if<ServiceRefusal>(&reply))
            return refusal->code + ": " + refusal->text;
        const ServiceValue first = std::get<ServiceValues>(reply).at(0);
        if (const auto* number = std::get_if<int64_t>(&first))
            return std::to_string(*number);
        if (const auto* yes = std::get_if<bool>(&first))
            return *yes ? "yes" : "no";
        return std::get<std::string>(first);
    }
    std::string remove(const std::string& path, uint32_t user = ana) {
        return call(methods::removeAllowedItem, {ServiceBytes{path}}, user);
    }
    std::string size(const std::string& path) {
        return call(methods::sizeOfAllowedDirectory, {ServiceBytes{path}});
    }

private:
    HelperService::Dependencies dependencies() {
        return {[this](uint32_t) {
                    return HelperPathPolicy{HelperPathPolicy::fixtureAllowlist(folder / "cache"),
                                            HelperPathPolicy::defaultDeniedBasenames()};
                },
                [this](MaintenanceTask task) {
                    MaintenancePlan plan{{{"/bin/sh", {"-c", "cd " + folder.path() + "; " + chore}}}};
                    if (task == MaintenanceTask::purgeMemory)
                        plan = {{}, MaintenancePlan::Blocker::programs, {"one", "other"}};
                    return plan;
                },
                [](MaintenanceTask task) { return task != MaintenanceTask::restartFinder; },
                InstallDependencies::ofThisMachine()};
    }
};

TEST(HelperPathPolicy, refusesInOrder) {
    const HelperPathPolicy policy{HelperPathPolicy::userSpaceAllowlist({.home = "/home/ana",
                                                                        .caches = "/home/ana/.cache",
                                                                        .logs = "/home/ana/.local/state",
                                                                        .temporary = "/tmp"}),
                                  HelperPathPolicy::defaultDeniedBasenames()};
    struct Case {
        std::string path;
        std::string text; ///< of the refusal; empty when it may go
    };
    const std::string zero("/tmp/a\0b", 8);
    const std::string cache = "/home/ana/.cache";
    const Case cases[]{
        {cache + "/CloudKit/.//sub/", ""},
        {cache + "/../.cache/x", ""},
        {"/home/ana/.local/state/x.log", ""},
        {cache + "/", "Refusing to delete allowlist root: " + cache},
        {cache + "/sub/..", "Refusing to delete allowlist root: " + cache},
        {"/tmp", "Refusing to delete allowlist root: /tmp"},
        {cache + "/CloudKit", "Refusing to delete denied item: CloudKit"},
        {cache + "/deep/com.apple.Safari/", "Refusing to delete denied item: com.apple.Safari"},
        {cache + "/../.ssh/id", "Path not allowed: /home/ana/.ssh/id"},
        {cache + "s/x", "Path not allowed: " + cache + "s/x"},
        {"/home/eva/.cache/x", "Path not allowed: /home/eva/.cache/x"},
        {"/", "Path not allowed: /"},
        {"", "Path not allowed: "},
        {"~/.cache/x", "Path not allowed: ~/.cache/x"},
        {".cache/x", "Path not allowed: .cache/x"},
        {zero, "Path not allowed: /tmp/a"},
        {"/.nofollow/tmp", "Refusing to delete allowlist root: /tmp"},
        {"/.vol/home/eva/x", "Path not allowed: /home/eva/x"},
    };
    for (const Case& each : cases) {
        std::string text;
        try {
            policy.validateMutablePath(each.path);
        } catch (const HelperServiceError& error) {
            text = error.what();
        }
        EXPECT_EQ(text, each.text) << each.path;
    }
    EXPECT_EQ(policy.validateReadablePath(cache).root, cache);
    EXPECT_EQ(policy.validateReadablePath(cache + "/CloudKit").path, cache + "/CloudKit");
    EXPECT_THROW(policy.validateReadablePath("/home/ana"), HelperServiceError);
    const HelperPathPolicy nested{PathAllowlist({"/home/ana", cache}), {}};
    EXPECT_EQ(nested.validateReadablePath(cache + "/x").root, cache) << "the longest";
}

TEST(HelperServiceError, crossesTheConnectionAsText) {
    const ServiceRefusal refusal = HelperServiceError("failed", "first\nname \xff\x1b[2J é").refusal();
    EXPECT_EQ(refusal.text, "first\nname \\xFF\\x1B[2J é");
    EXPECT_EQ(HelperServiceError("failed", "").refusal().text, "Helper error");
    EXPECT_LT(HelperServiceError::denied(std::string(1 << 20, '\xff')).refusal().text.size(), 1u << 16);
}

TEST(HelperService, removesAndMeasuresWhatIsAllowedAlone) {
    Peer peer;
    const std::string cache = peer.folder / "cache";
    put(cache + "/app/sub/file");
    put(cache + "/app/file");
    put(peer.folder / "treasure/file");
    fs::create_directory_symlink(peer.folder / "treasure", cache + "/link");
    EXPECT_EQ(peer.size(cache), "10");
    EXPECT_EQ(peer.size(cache + "/app/file"), "5");
    EXPECT_EQ(peer.size(cache + "/link"), "0");
    EXPECT_THAT(peer.size(cache + "/link/file"), HasSubstr("failed: " + cache + "/link: "));
    EXPECT_THAT(peer.remove(cache + "/link/file"), HasSubstr("failed: " + cache + "/link: "));
    EXPECT_EQ(peer.remove(cache + "/none/file"), "notFound: Path not found: " + cache + "/none/file");
    EXPECT_EQ(peer.size(cache + "/app/file/x"), "notFound: Path not found: " + cache + "/app/file/x");
    EXPECT_EQ(peer.remove(cache), "rootDeletionForbidden: Refusing to delete allowlist root: " + cache);
    EXPECT_EQ(peer.remove(cache + "/link"), "yes");
    EXPECT_EQ(peer.remove(cache + "/app"), "yes");
    EXPECT_TRUE(fs::is_empty(cache));
    EXPECT_TRUE(fs::exists(peer.folder / "treasure/file"));
}

TEST(HelperService, leavesOthersThingsInAFolderThatAllShare) {
    Peer peer;
    const std::string cache = peer.folder / "cache";
    for (const char* path : {"/hers/sub/file", "/others/sub/file"})
        put(cache + path);
    ASSERT_EQ(::chmod(cache.c_str(), 01777), 0);
    ASSERT_EQ(::chown((cache + "/hers").c_str(), ana, ana), 0) << "needs root";
    EXPECT_EQ(peer.remove(cache + "/others/sub"), "denied: Path not allowed: " + cache + "/others/sub");
    EXPECT_EQ(peer.size(cache + "/others"), "denied: Path not allowed: " + cache + "/others");
    EXPECT_EQ(peer.remove(cache + "/hers/sub/file"), "yes");
}

/// Somebody swaps a folder for a link to a treasure again and again, while root removes below it.
TEST(HelperService, isNotLedAstrayByALinkPlantedBetweenCheckAndUse) {
    Peer peer;
    const std::string cache = peer.folder / "cache";
    const std::string treasure = peer.folder / "treasure";
    for (int i = 0; i < 100; ++i)
        put(fmt::format("{}/item/{}", treasure, i));
    fs::create_directories(cache + "/sub");
    std::atomic<bool> isOver = false;
    std::thread swapper([&] {
        while (!isOver) {
            ::rename((cache + "/sub").c_str(), (cache + "/aside").c_str());
            ::symlink(treasure.c_str(), (cache + "/sub").c_str());
            ::unlink((cache + "/sub").c_str());
            ::rename((cache + "/aside").c_str(), (cache + "/sub").c_str());
        }
    });
    std::map<std::string, int> ends;
    for (int i = 0; i < 1500; ++i) {
        std::error_code absent;
        fs::create_directory(cache + "/aside/item", absent);
        fs::create_directory(cache + "/sub/item", absent);
        const std::string end = peer.remove(cache + "/sub/item");
        ++ends[end.substr(0, end.find(':'))];
    }
    isOver = true;
    swapper.join();
    EXPECT_EQ(std::distance(fs::directory_iterator(treasure + "/item"), {}), 100);
    EXPECT_GT(ends["yes"], 0);
    EXPECT_GT(ends["failed"] + ends["notFound"], 0) << "the race was never lost";
}

TEST(PeerScopedHelper, answersEveryMethod) {
    Peer peer;
    for (const ServiceMethod& method : helperMethods) {
        ServiceValues arguments;
        if (method.arguments == "y")
            arguments.push_back(ServiceBytes{"rubbish"});
        else if (method.arguments == "s")
            arguments.push_back(std::string("rubbish"));
        SCOPED_TRACE(method.name);
        EXPECT_NE(peer.call(method, arguments), "");
    }
    EXPECT_THAT(peer.call(methods::ping, {}), HasSubstr("varnholt-helper "));
    EXPECT_THAT(peer.call(methods::startDeviceJob, {ServiceBytes{"{"}}),
                HasSubstr("badJobSpec: Bad device job: "));
    EXPECT_EQ(peer.call(methods::deviceJobStatus, {std::string("7")}), "unknownJob: Unknown job: 7");
    EXPECT_EQ(peer.call(methods::cancelDeviceJob, {std::string("7")}), "no");
    EXPECT_THAT(peer.call(methods::companyAdminPassword, {}), HasSubstr("notThereYet: "));
}

TEST(PeerScopedHelper, runsTheTasksThatNeedRootAndNoOthers) {
    Peer peer;
    const auto run = [&](const char* task) {
        return peer.call(methods::runMaintenanceTask, {std::string(task)});
    };
    EXPECT_EQ(run("nothing"), "unknownTask: Unknown maintenance task: nothing");
    EXPECT_EQ(run("restart-finder"),
              "taskNotPrivileged: Task restart-finder does not need root; run it from the app.");
    EXPECT_EQ(run("purge-memory"),
              "missingProgram: Task purge-memory needs one of these programs: one, other.");
    EXPECT_EQ(run("flush-dns"), "yes");
    peer.chore = "exit 3";
    EXPECT_EQ(run("flush-dns"), "no");
    // More than crosses the connection, and what no text may hold.
    peer.chore = "head -c 3000000 /dev/zero | tr '\\0' '\\377'; exit 3";
    const ServiceReply reply = peer.begin(methods::runMaintenanceTask, {std::string("flush-dns")}).get();
    const auto& output = std::get<std::string>(std::get<ServiceValues>(reply).at(1));
    EXPECT_LE(output.size(), mostServiceBytes);
    EXPECT_TRUE(output.ends_with("\uFFFD\nexit 3"));
    peer.chore = "printf 'a\\0b'; false";
    EXPECT_EQ(
        std::get<ServiceValues>(peer.begin(methods::runMaintenanceTask, {std::string("flush-dns")}).get()),
        (ServiceValues{false, std::string("ab\nexit 1")}));
}

TEST(PeerScopedHelper, endsWhatItBeganForAPeerThatLeft) {
    Peer peer;
    peer.chore = "touch begun; while [ ! -e go ]; do sleep 0.01; done; touch done";
    auto reply = peer.begin(methods::runMaintenanceTask, {std::string("flush-dns")});
    EXPECT_TRUE(test::waitUntil("it begins", [&] { return fs::exists(peer.folder / "begun"); }));
    peer.helper.peerGone({ana, 1, ":1.1"});
    EXPECT_TRUE(peer.helper.isBusy());
    put(peer.folder / "go");
    EXPECT_TRUE(std::holds_alternative<ServiceValues>(reply.get()));
    EXPECT_TRUE(fs::exists(peer.folder / "done"));
    EXPECT_TRUE(test::waitUntil("it is idle", [&] { return !peer.helper.isBusy(); }));
}

TEST(PeerScopedHelper, keepsRoomForOtherUsersAndStopsWhenAsked) {
    Peer peer;
    peer.chore = "sleep 600";
    std::vector<std::future<ServiceReply>> hanging;
    for (int i = 0; i < 8; ++i)
        hanging.push_back(peer.begin(methods::runMaintenanceTask, {std::string("flush-dns")}));
    EXPECT_EQ(peer.call(methods::ping, {}), "busy: The helper is busy with other work.");
    EXPECT_THAT(peer.call(methods::ping, {}, ana + 1), HasSubstr("varnholt-helper "));
    peer.helper.end();
    for (auto& reply : hanging)
        EXPECT_EQ(std::get<ServiceRefusal>(reply.get()).text, "Cancelled.");
}

TEST(OutsideSandbox, runsTheSameCommandAsAUnitOfItsOwn) {
    const MaintenanceCommand wrapped =
        outsideSandbox({"/usr/bin/apt-get", {"--yes", "upgrade"}, {100}}, std::chrono::seconds(60));
    EXPECT_EQ(wrapped.executable, "/usr/bin/systemd-run");
    EXPECT_EQ(wrapped.alsoPasses, std::vector<int>{100});
    EXPECT_THAT(wrapped.arguments,
                testing::IsSupersetOf({"--pipe", "--wait", "--property=RuntimeMaxSec=60"}));
    EXPECT_EQ(std::vector(wrapped.arguments.end() - 4, wrapped.arguments.end()),
              (std::vector<std::string>{"--", "/usr/bin/apt-get", "--yes", "upgrade"}));
}

} // namespace

} // namespace vh::helper

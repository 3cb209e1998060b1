#include "Platform/Files.h"
#include "helper/HelperSystem.h"
#include "support/LoopDisk.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <unistd.h>

namespace vh::test {
namespace {

namespace fs = std::filesystem;
namespace methods = helper::methods;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* alive = "varnholt-helper ";

/// A folder in the temporary one that the helper knows, whatever this test's own is. It belongs to who calls.
class Grounds {
public:
    explicit Grounds(uid_t owner = HelperSystem::user) {
        char name[] = "/tmp/varnholt-helper-test-XXXXXX";
        path_ = ::mkdtemp(name);
        EXPECT_EQ(::chown(name, owner, owner), 0) << "the helper's tests need root";
        writeFileAtomically(*this / "file", "12345");
        makeFolders(*this / "folder/CloudKit");
        writeFileAtomically(*this / "folder/one", "123");
        writeFileAtomically(*this / "folder/CloudKit/two", "12");
    }
    ~Grounds() { fs::remove_all(path_); }
    Grounds(const Grounds&) = delete;
    Grounds& operator=(const Grounds&) = delete;

    std::string operator/(std::string_view name) const { return fmt::format("{}/{}", path_, name); }
    /// What lies below, in order.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& each : fs::recursive_directory_iterator(path_))
            found.push_back(each.path().string().substr(path_.size() + 1));
        std::ranges::sort(found);
        return found;
    }
    /// A tree whose removal takes a while.
    std::string bigTree() const {
        constexpr int filesInEach = 500;
        for (int i = 0; i < bigFolders; ++i) {
            makeFolders(*this / fmt::format("big/{}", i));
            for (int k = 0; k < filesInEach; ++k)
                fs::create_hard_link(*this / "file", *this / fmt::format("big/{}/{}", i, k));
        }
        return *this / "big";
    }
    /// Whether the removal of that tree has begun.
    bool isBeingRemoved() const {
        return std::distance(fs::directory_iterator(*this / "big"), fs::directory_iterator()) < bigFolders;
    }

private:
    static constexpr int bigFolders = 40;
    std::string path_;
};

/// Arguments of the kinds that a method takes, which name `path`.
ServiceValues argumentsOf(const ServiceMethod& method, const std::string& path) {
    if (method.name == methods::runMaintenanceTask.name)
        return {std::string("purge-memory")};
    if (method.name == methods::startDeviceJob.name)
        return {ServiceBytes{
            fmt::format(R"({{"kind":"image","device":"/dev/loop0","destination":"{}.image"}})", path)}};
    if (method.name == methods::installPackage.name)
        return {ServiceBytes{path + ".deb"}};
    ServiceValues values;
    for (const char letter : method.arguments)
        values.push_back(letter == 's' ? ServiceValue("no-such-job") : ServiceValue(ServiceBytes{path}));
    return values;
}

ServiceValues bytes(const std::string& path) {
    return {ServiceBytes{path}};
}

TEST(Helper, IsStartedByACallAndEndsWhenNobodyCalls) {
    HelperSystem system(std::chrono::seconds(1));
    EXPECT_EQ(system.helper(), -1);
    EXPECT_THAT(system.errorOfOwning(), HasSubstr("not allowed to own"));
    const auto link = system.link();
    EXPECT_THAT(answerOf(*link, methods::ping, {}), StartsWith(alive));
    const int first = system.helper();
    waitUntil("it ends", [&] { return !isAlive(first); });
    EXPECT_THAT(answerOf(*link, methods::ping, {}), StartsWith(alive));
    EXPECT_NE(system.helper(), first);
    EXPECT_THAT(system.questions(), IsEmpty());
}

/// Calls that come again and again while helpers leave: none may fall between two of them.
TEST(Helper, EveryCallIsAnsweredWhileHelpersComeAndGo) {
    HelperSystem system;
    const auto link = system.link();
    for (int i = 0; i < 40; ++i) {
        ASSERT_THAT(answerOf(*link, methods::ping, {}), StartsWith(alive));
        const int now = system.helper();
        ::kill(now, SIGTERM);
        std::vector<Ending> endings;
        for (int k = 0; k < 6; ++k)
            endings.push_back(start(*link, methods::ping, {}));
        for (Ending& each : endings)
            ASSERT_THAT(answerOf(std::move(each)), StartsWith(alive)) << i;
    }
}

TEST(Helper, RefusesInTheWordsOfItsPolicies) {
    HelperSystem system;
    system.allow(true);
    const Grounds grounds, roots(0);
    const auto before = grounds.names();
    const auto link = system.link();
    const struct {
        const ServiceMethod& method;
        ServiceValues arguments;
        std::string text;
    } cases[]{
        {methods::removeAllowedItem, bytes("/tmp"), "Refusing to delete allowlist root: /tmp"},
        {methods::removeAllowedItem, bytes("/tmp/x/.."), "Refusing to delete allowlist root: /tmp"},
        {methods::removeAllowedItem, bytes(grounds / "folder/CloudKit"),
         "Refusing to delete denied item: CloudKit"},
        {methods::removeAllowedItem, bytes(grounds / "../../etc/hostname"),
         "Path not allowed: /etc/hostname"},
        {methods::removeAllowedItem, bytes("/root/.cache/x"), "Path not allowed: /root/.cache/x"},
        {methods::removeAllowedItem, bytes(roots / "file"), "Path not allowed: " + roots / "file"},
        {methods::removeAllowedItem, bytes("file"), "Path not allowed: file"},
        {methods::removeAllowedItem, bytes(grounds / "none"), "Path not found: " + grounds / "none"},
        {methods::sizeOfAllowedDirectory, bytes("/etc"), "Path not allowed: /etc"},
        {methods::sizeOfAllowedDirectory, bytes(grounds / "none"), "Path not found: " + grounds / "none"},
        {methods::runMaintenanceTask, {"sing"}, "Unknown maintenance task: sing"},
        {methods::runMaintenanceTask,
         {"restart-finder"},
         "Task restart-finder does not need root; run it from the app."},
        {methods::deviceJobStatus, {"none"}, "Unknown job: none"},
        {methods::cancelDeviceJob, {"none"}, "no"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(answerOf(*link, each.method, each.arguments), each.text);
    EXPECT_EQ(grounds.names(), before);
    for (const ServiceMethod& method :
         {methods::manageLocalAccount, methods::applyCompanyAdmin, methods::companyAdminPassword})
        EXPECT_THAT(answerOf(*link, method, argumentsOf(method, "{}")),
                    HasSubstr("accounts of this computer"));
    EXPECT_THAT(answerOf(*link, methods::startDeviceJob, bytes("{")), StartsWith("Bad device job: "));
}

TEST(Helper, DoesWhatWasAllowed) {
    HelperSystem system;
    system.allow(true);
    const Grounds grounds;
    const auto link = system.link();
    EXPECT_EQ(answerOf(*link, methods::sizeOfAllowedDirectory, bytes(grounds / "")), "10");
    EXPECT_EQ(answerOf(*link, methods::sizeOfAllowedDirectory, bytes(grounds / "file")), "5");
    EXPECT_EQ(answerOf(*link, methods::removeAllowedItem, bytes(grounds / "folder")), "yes");
    EXPECT_THAT(grounds.names(), ElementsAre("file"));
    EXPECT_THAT(system.questions(), ElementsAre("removal"));
}

TEST(Helper, ImagesADiskInTheNameOfWhoAsks) {
    HelperSystem system;
    system.allow(true);
    const Grounds grounds;
    const std::string content(3 << 20, 'd');
    const LoopDisk disk(content);
    const std::string image = grounds / "disk.img";
    const auto link = system.link();
    const std::string job = answerOf(
        *link, methods::startDeviceJob,
        bytes(fmt::format(R"({{"kind":"image","device":"{}","destination":"{}"}})", disk.device(), image)));
    std::string status;
    waitUntil("the image is made", [&] {
        status = answerOf(*link, methods::deviceJobStatus, {job});
        return status.find("\"done\"") != std::string::npos || status.find("\"failed\"") != std::string::npos;
    });
    EXPECT_THAT(status, HasSubstr(LoopDisk::run({"sha256sum", image}).substr(0, 64)));
    EXPECT_TRUE(readFile(image) == content);
    EXPECT_EQ(statusOf(image)->owner, HelperSystem::user);
    EXPECT_THAT(system.questions(), ElementsAre("devices"));
}

TEST(Helper, NobodyWhoIsNotAllowedChangesAnything) {
    HelperSystem system;
    const Grounds grounds;
    const auto before = grounds.names();
    const auto link = system.link();
    const auto questionsOf = [&](auto ask) {
        const size_t first = system.questions().size();
        for (const ServiceMethod& method : helper::helperMethods)
            if (!method.action.empty())
                ask(method);
        const auto all = system.questions();
        return std::vector(all.begin() + std::ptrdiff_t(first), all.end());
    };
    system.allow(false);
    const auto denied = questionsOf([&](const ServiceMethod& method) {
        const std::string answer = answerOf(*link, method, argumentsOf(method, grounds / "file"));
        EXPECT_THAT(answer, Not(testing::AnyOf(StartsWith("yes"), StartsWith("lost"), "no answer")))
            << method.name;
    });
    EXPECT_THAT(denied, testing::IsSupersetOf({"removal", "maintenance", "devices", "install"}));
    EXPECT_EQ(grounds.names(), before);

    system.polkit().beSilent();
    std::vector<Ending> waiting;
    questionsOf([&](const ServiceMethod& method) {
        waiting.push_back(start(*link, method, argumentsOf(method, grounds / "file")));
    });
    EXPECT_THAT(answerOf(*link, methods::ping, {}), StartsWith(alive)) << "while the others wait";
    EXPECT_EQ(grounds.names(), before);
}

TEST(Helper, KilledInTheMiddleItIsStartedByTheNextCall) {
    HelperSystem system;
    system.allow(true);
    const Grounds grounds;
    const std::string tree = grounds.bigTree();
    const auto link = system.link();
    Ending removal = start(*link, methods::removeAllowedItem, bytes(tree));
    waitUntil("the removal begins", [&] { return grounds.isBeingRemoved(); });
    ::kill(system.helper(), SIGKILL);
    EXPECT_THAT(answerOf(std::move(removal)), StartsWith("lost"));
    EXPECT_TRUE(fs::exists(tree));
    EXPECT_EQ(answerOf(*link, methods::removeAllowedItem, bytes(tree)), "yes");
    EXPECT_FALSE(fs::exists(tree));
}

TEST(Helper, AskedToEndItAnswersWhatItHasBegun) {
    HelperSystem system;
    system.allow(true);
    const Grounds grounds;
    const std::string tree = grounds.bigTree();
    const auto link = system.link();
    Ending removal = start(*link, methods::removeAllowedItem, bytes(tree));
    waitUntil("the removal begins", [&] { return grounds.isBeingRemoved(); });
    const int helper = system.helper();
    ::kill(helper, SIGTERM);
    EXPECT_EQ(answerOf(std::move(removal)), "yes");
    waitUntil("it ends", [&] { return !isAlive(helper); });
    EXPECT_FALSE(fs::exists(tree));
}

TEST(Helper, EndsWithItsBus) {
    HelperSystem system;
    EXPECT_THAT(answerOf(*system.link(), methods::ping, {}), StartsWith(alive));
    const int helper = system.helper();
    system.stopBus();
    waitUntil("it ends", [&] { return !isAlive(helper); });
}

} // namespace
} // namespace vh::test

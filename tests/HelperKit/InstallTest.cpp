#include "HelperKit/AppRemovalPolicy.h"
#include "HelperKit/ApplicationInstallPolicy.h"
#include "HelperKit/HelperServiceError.h"
#include "HelperKit/PackageInstallPolicy.h"
#include "HelperKit/PackageInstaller.h"
#include "Platform/Files.h"
#include "support/TempDir.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vh::helper {

namespace {

using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

constexpr uint32_t ana = 1000;
using Execution = MaintenanceRunner::Execution;

template <class Work>
std::string refusalOf(Work work) {
    try {
        work();
    } catch (const HelperServiceError& error) {
        return error.code() + ": " + error.what();
    }
    return "granted";
}

std::string line(const MaintenanceCommand& command) {
    return fmt::format("{} {}", command.executable, fmt::join(command.arguments, " "));
}

/// A machine in a scratch folder whose programs answer as a test says and are noted.
struct Machine {
    test::TempDir folder;
    Execution answer{0, "", false};    ///< of programs that only answer
    Execution installed{0, "", false}; ///< of those that install
    std::vector<std::string> lines;
    std::string seen; ///< what the program that installs found in the package
    InstallDependencies dependencies{.system = MaintenanceSystem::linux,
                                     .hasProgram = [](const std::string&) { return true; },
                                     .inboxOf = [this](uint32_t) { return folder / "inbox"; },
                                     .packageStaging = folder / "kept/varnholt/packages",
                                     .applicationStaging = folder / "kept/varnholt/apps",
                                     .applications = folder / "opt",
                                     .ask =
                                         [this](const MaintenanceCommand& command) {
                                             lines.push_back(line(command));
                                             return answer;
                                         },
                                     .install =
                                         [this](const MaintenanceCommand& command) {
                                             lines.push_back(line(command));
                                             seen = readFile(folder / "kept/varnholt/packages/package.deb");
                                             return installed;
                                         }};
    PackageInstaller packages{dependencies};
    ApplicationInstaller applications{dependencies};

    Machine() {
        for (const char* name : {"inbox", "kept", "opt"})
            fs::create_directories(folder / name);
    }
    std::string put(const std::string& name, std::string_view text = "text", uint32_t owner = ana) {
        const std::string path = folder / name;
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path) << text;
        for (std::string at = path; at != folder.path(); at = fs::path(at).parent_path())
            if (::lchown(at.c_str(), owner, owner) != 0)
                ADD_FAILURE() << "needs root";
        return path;
    }
    std::string install(const std::string& path, bool verified) {
        return refusalOf([&] { packages.install(path, ana, verified); });
    }
    std::string installApp(const std::string& path) {
        return refusalOf([&] { applications.install(path, ana); });
    }
    std::string removeApp(const std::string& name) {
        return refusalOf([&] { removeApplication(dependencies, folder / "opt/" + name); });
    }
};

TEST(PackageInstallPolicy, namesTheProgramsOfEachSystem) {
    const auto all = [](const std::string&) {
        return true;
    };
    const auto none = [](const std::string&) {
        return false;
    };
    const PackageInstallPolicy mac{MaintenanceSystem::macos, all};
    const PackageInstallPolicy linux{MaintenanceSystem::linux, all};
    const PackageInstallPolicy bare{MaintenanceSystem::linux, none};
    EXPECT_EQ(line(mac.assessment(PackageKind::pkg, "/a.pkg")),
              "/usr/sbin/spctl --assess --type install /a.pkg");
    EXPECT_EQ(line(mac.installation(PackageKind::pkg, "/a.pkg")),
              "/usr/sbin/installer -pkg /a.pkg -target /");
    EXPECT_THAT(line(linux.installation(PackageKind::deb, "/a.deb")), HasSubstr("/usr/bin/apt-get --yes "));
    EXPECT_EQ(line(linux.installation(PackageKind::rpm, "/a.rpm")),
              "/usr/bin/dnf --assumeyes install /a.rpm");
    EXPECT_EQ(line(linux.assessment(PackageKind::rpm, "/a.rpm")), "/usr/bin/rpmkeys --checksig /a.rpm");
    EXPECT_EQ(refusalOf([&] { bare.assessment(PackageKind::deb, "/a.deb"); }),
              "missingProgram: The signature of this package cannot be checked: /usr/bin/debsig-verify is "
              "not there.");
    EXPECT_THAT(refusalOf([&] { bare.installation(PackageKind::deb, "/a.deb"); }),
                HasSubstr("/usr/bin/dpkg."));
    EXPECT_EQ(mac.kindOf("/a.deb"), std::nullopt);
    EXPECT_EQ(linux.kindOf("/a.pkg"), std::nullopt);
    const std::string zero = std::string("/inbox/a\0b.deb", 14);
    EXPECT_THAT(refusalOf([&] { linux.check(zero, "/inbox", false); }), HasSubstr("Path not allowed"));
}

TEST(PackageInstallPolicy, callsNothingSignedWithoutProof) {
    struct Case {
        PackageKind kind;
        Execution said;
        std::string refusal;
    };
    const Case cases[]{
        {PackageKind::rpm, {0, "/a.rpm: digests signatures OK"}, "granted"},
        {PackageKind::rpm, {0, "/a.rpm: rsa sha1 (md5) pgp md5 OK"}, "granted"},
        {PackageKind::rpm, {0, "/a.rpm: digests OK"}, "notAccepted: The system would not accept"},
        {PackageKind::rpm, {0, "/a signatures .rpm: digests OK"}, "notAccepted: The system would not accept"},
        {PackageKind::rpm,
         {1, "/a.rpm: digests SIGNATURES NOT OK"},
         "notAccepted: The system would not accept"},
        {PackageKind::rpm, {0, ""}, "notAccepted: The system would not accept"},
        {PackageKind::deb, {0, "debsig: Verified package"}, "granted"},
        {PackageKind::deb, {0, "", true}, "notAccepted: The system would not accept"},
        {PackageKind::pkg,
         {3, "rejected"},
         "notAccepted: macOS would not open this package (it must be signed with a Developer ID and "
         "notarized). "
         "rejected"},
    };
    for (const Case& each : cases)
        EXPECT_THAT(refusalOf([&] { PackageInstallPolicy::requireAccepted(each.kind, each.said); }),
                    StartsWith(each.refusal))
            << each.said.output;
}

TEST(PackageInstaller, refusesInOrder) {
    Machine machine;
    const std::string inbox = machine.folder / "inbox";
    machine.put("inbox/text.txt");
    machine.put("inbox/theirs.deb", "text", ana + 1);
    machine.put("elsewhere/a.deb");
    fs::create_directory(inbox + "/folder.deb");
    fs::create_symlink(inbox + "/theirs.deb", inbox + "/link.deb");
    fs::create_directory_symlink(machine.folder / "elsewhere", inbox + "/sub");
    const auto textOf = [&](const std::string& path, const char* text) {
        return text + path;
    };
    const std::pair<std::string, const char*> cases[]{
        {machine.folder / "elsewhere/a.deb",
         "outsideInbox: Only packages received in company mode can be installed: "},
        {inbox + "/text.txt", "notAPackage: Not an installer package: "},
        {inbox + "/none.deb", "notFound: Not found: "},
        {inbox + "/link.deb", "symlink: Refusing to follow a symlink: "},
        {inbox + "/sub/a.deb", "symlink: Refusing to follow a symlink: "},
        {inbox + "/folder.deb", "notAPackage: Not an installer package: "},
        {inbox + "/theirs.deb", "notOwned: The package does not belong to the person logged in: "},
    };
    ASSERT_EQ(::chown(inbox.c_str(), ana, ana), 0) << "needs root";
    for (const auto& [path, text] : cases)
        EXPECT_EQ(machine.install(path, false), textOf(path, text));
    EXPECT_TRUE(machine.lines.empty());
}

TEST(PackageInstaller, installsTheCopyAloneAndTakesItAway) {
    Machine machine;
    const std::string path = machine.put("inbox/--good one.deb", "contents");
    EXPECT_EQ(machine.install(path, false), "granted");
    EXPECT_EQ(machine.lines.size(), 1u) << "nothing was to be assessed";
    EXPECT_EQ(machine.seen, "contents");
    EXPECT_THAT(machine.lines.back(),
                testing::EndsWith("install " + machine.dependencies.packageStaging + "/package.deb"));

    machine.lines.clear();
    EXPECT_EQ(machine.install(machine.put("own/a.deb"), true), "granted");
    EXPECT_THAT(machine.lines,
                testing::ElementsAre(StartsWith("/usr/bin/debsig-verify "), StartsWith("/usr/bin/apt-get ")));
    machine.answer = {13, "no signature", false};
    EXPECT_THAT(machine.install(path, true), HasSubstr("no signature"));
    EXPECT_EQ(machine.lines.size(), 3u) << "what was not accepted was installed";
    machine.installed = {-1, "", true};
    EXPECT_EQ(machine.install(path, false), "timedOut: The installer did not finish in time.");
    machine.installed = {100, "broken", false};
    EXPECT_FALSE(machine.packages.install(path, ana, false).succeeded);
    EXPECT_TRUE(fs::is_empty(machine.dependencies.packageStaging));
    EXPECT_TRUE(fs::exists(path));
}

TEST(ApplicationInstaller, refusesInOrderAndEverythingThatNobodyCanProve) {
    Machine machine;
    const std::string inbox = machine.folder / "inbox";
    machine.put("elsewhere/App/app.desktop");
    machine.put("inbox/Theirs/app.desktop", "", ana + 1);
    machine.put("inbox/Plain/readme");
    machine.put("inbox/Varnholt/app.desktop");
    machine.put("inbox/App/usr/share/applications/org.example.app.desktop");
    machine.put("inbox/Other/org.example.app.desktop");
    machine.put("inbox/a.AppImage", std::string("\x7f"
                                                "ELF\2\1\1\0AI\2 and so on",
                                                20));
    machine.put("opt/Other/org.else.desktop", "", 0);
    fs::create_directory_symlink(machine.folder / "elsewhere", inbox + "/link");
    const std::string opt = machine.dependencies.applications;
    const std::pair<std::string, std::string> cases[]{
        {machine.folder / "elsewhere/App",
         "outsideInbox: Only apps received in company mode can be installed: "},
        {inbox + "/link", "symlink: Refusing to follow a symlink: "},
        {inbox + "/link/App", "symlink: Refusing to follow a symlink: "},
        {inbox + "/Theirs", "notOwned: The app does not belong to the person logged in: "},
        {inbox + "/Plain", "notAnApp: Not an application: "},
        {inbox + "/Varnholt", "protected: " + opt + "/Varnholt is protected and cannot be replaced."},
        {inbox + "/Other", "otherApp: " + opt + " already has a different app called Other"},
        {inbox + "/App", "notAccepted: This system cannot tell"},
        {inbox + "/a.AppImage", "notAccepted: This system cannot tell"},
    };
    for (const auto& [path, text] : cases)
        EXPECT_THAT(machine.installApp(path), StartsWith(text));
    EXPECT_TRUE(fs::is_empty(machine.dependencies.applicationStaging));
    EXPECT_FALSE(fs::exists(opt + "/App"));
}

TEST(ApplicationInstaller, replacesAnOlderVersionOfTheSameAndPutsItBackWhenThatFails) {
    Machine machine;
    machine.dependencies.system = MaintenanceSystem::macos; // where there is a proof
    machine.answer = {0, "org.example.app", false};
    const std::string path = machine.folder / "inbox/App.app";
    machine.put("inbox/App.app/version", "new");
    const std::string place = machine.folder / "opt/App.app";
    EXPECT_EQ(machine.installApp(path), "granted");
    EXPECT_EQ(readFile(place + "/version"), "new");
    EXPECT_EQ(statusOf(place + "/version")->owner, 0u);

    machine.put("inbox/App.app/version", "newer");
    machine.put("opt/previous-App.app/version", "left by a run that was killed", 0);
    EXPECT_EQ(machine.installApp(path), "granted");
    EXPECT_EQ(readFile(place + "/version"), "newer");
    EXPECT_FALSE(fs::exists(machine.folder / "opt/previous-App.app"));

    // The copy vanishes after it was accepted.
    machine.dependencies.ask = [&](const MaintenanceCommand& command) {
        if (command.executable.ends_with("spctl"))
            fs::remove_all(machine.dependencies.applicationStaging + "/App.app");
        return Execution{0, "org.example.app", false};
    };
    EXPECT_THAT(machine.installApp(path), StartsWith("failed: "));
    EXPECT_EQ(readFile(place + "/version"), "newer");
    machine.dependencies.ask = [](const MaintenanceCommand& command) {
        return Execution{command.executable.ends_with("spctl") ? 3 : 0, "com.apple.app", false};
    };
    EXPECT_EQ(machine.installApp(path), "protected: " + place + " is protected and cannot be replaced.");
}

TEST(AppRemovalPolicy, knowsApplicationsFromTheSystem) {
    const AppRemovalPolicy linux{MaintenanceSystem::linux, "/opt"};
    const AppRemovalPolicy mac{MaintenanceSystem::macos, "/Applications"};
    struct Case {
        const AppRemovalPolicy& policy;
        std::string path;
        std::string refusal;
    };
    const Case cases[]{
        {linux, "/opt/app", "granted"},
        {linux, "/opt/../opt/app/", "granted"},
        {linux, "/opt", "denied: Path not allowed: /opt"},
        {linux, "/opt/app/bin", "denied: Path not allowed: /opt/app/bin"},
        {linux, "/opt/../etc", "denied: Path not allowed: /etc"},
        {linux, "/opt/.hidden", "notAnApp: Not an application: /opt/.hidden"},
        {linux, "/opt/Varnholt", "protected: /opt/Varnholt is protected and cannot be removed."},
        {linux, "/opt/containerd", "protected: /opt/containerd is protected and cannot be removed."},
        {mac, "/Applications/App.app", "granted"},
        {mac, "/Applications/Utilities", "notAnApp: Not an application: /Applications/Utilities"},
        {mac, "/System/Applications/Mail.app", "denied: Path not allowed: /System/Applications/Mail.app"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(refusalOf([&] { each.policy.check(each.path); }), each.refusal);
    EXPECT_TRUE(isProtectedApplication(MaintenanceSystem::macos, "Mail.app", "com.apple.mail"));

    const std::pair<const char*, const char*> owners[]{
        {"google-chrome: /opt/google", "google-chrome"},
        {"a, b:amd64: /opt/x", "a, b"},
        {"chrome:", "chrome"},
        {"/opt/x/ is owned by chrome 140-1", "chrome 140-1"},
        {"error: No package owns /opt/x", ""},
        {"file /opt/x is not owned by any package\nchrome:", "chrome"},
        {"file /opt/a:b is not owned by any package", ""},
        {"dpkg-query: no path found matching pattern /opt/x", ""},
        {"diversion by dash from: /opt/x", ""},
        {"", ""},
    };
    for (const auto& [said, owner] : owners)
        EXPECT_EQ(AppRemovalPolicy::ownerIn({0, said, false}), owner) << said;
}

TEST(AppRemoval, removesWhatNoPackageOwns) {
    Machine machine;
    machine.put("opt/App/bin/app", "", 0);
    machine.put("opt/readme", "", 0);
    machine.put("treasure/file", "", 0);
    fs::create_directory_symlink(machine.folder / "treasure", machine.folder / "opt/link");
    machine.answer = {0, "app-package: " + machine.folder.path(), false};
    EXPECT_EQ(machine.removeApp("App"),
              "ofAPackage: " + (machine.folder / "opt/App") +
                  " belongs to the package app-package; remove that with the package "
                  "manager.");
    EXPECT_TRUE(fs::exists(machine.folder / "opt/App/bin/app"));
    machine.answer = {1, "dpkg-query: no path found", false};
    EXPECT_THAT(machine.removeApp("none"), StartsWith("notFound: Not found: "));
    EXPECT_THAT(machine.removeApp("link"), StartsWith("symlink: "));
    EXPECT_THAT(machine.removeApp("readme"), StartsWith("notAnApp: "));
    EXPECT_EQ(machine.removeApp("App"), "granted");
    EXPECT_FALSE(fs::exists(machine.folder / "opt/App"));
    EXPECT_TRUE(fs::exists(machine.folder / "treasure/file"));
}

} // namespace

} // namespace vh::helper

#include "Platform/Files.h"
#include "Platform/Process.h"
#include "Platform/ServiceRegistration.h"
#include "helper/HelperSystem.h"
#include "support/ChildWork.h"
#include "support/PrivateBus.h"

#include <filesystem>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace vh::test {
namespace {

namespace fs = std::filesystem;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string program = "usr/local/libexec/varnholt/bin/varnholt-helper";
const std::string digest = "usr/local/libexec/varnholt/lib/varnholt/digest.so";
const std::string policy = "usr/share/polkit-1/actions/com.varnholt.helper.policy";
const std::string unit = "usr/local/lib/systemd/system/varnholt-helper.service";
const std::string activation = "usr/local/share/dbus-1/system-services/com.varnholt.helper.service";

TEST(HelperInstall, WritesWhatTheSystemNeedsAndTakesItAway) {
    const HelperRoot root;
    ::umask(0077);
    ASSERT_EQ(root.run("install"), "");
    ::umask(0022);
    const auto installed = root.files();
    EXPECT_THAT(installed,
                ElementsAre(StartsWith("/etc/dbus-1/system.d/com.varnholt.helper.conf 644"),
                            StartsWith("/usr/local/lib/systemd/system/varnholt-helper.service 644"),
                            StartsWith("/" + program + " 755"), StartsWith("/" + digest + " 644"),
                            StartsWith("/" + activation + " 644"), StartsWith("/" + policy + " 644")));
    EXPECT_EQ(fs::status(root / "usr/local/libexec").permissions(), fs::perms(0755));
    for (const std::string& file : {unit, activation})
        EXPECT_THAT(readFile(root / file), HasSubstr("=/" + program + "\n"));
    const auto identity = statusOf(root / unit)->identity;
    EXPECT_EQ(root.run("install"), "");
    EXPECT_EQ(statusOf(root / unit)->identity, identity) << "written again";

    // What an interrupted or meddled-with installation leaves is repaired.
    fs::remove(root / policy);
    fs::permissions(root / unit, fs::perms(0666));
    fs::resize_file(root / program, 100);
    fs::remove(root / activation);
    fs::create_symlink("/nonexistent", root / activation);
    EXPECT_EQ(root.run("install"), "");
    EXPECT_EQ(root.files(), installed);

    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(root.run("uninstall"), "");
        EXPECT_THAT(root.files(), IsEmpty());
    }
}

TEST(HelperInstall, LeavesToAPackageWhatAPackageBrought) {
    const HelperRoot root;
    makeFolders(root / "usr/share/dbus-1/system-services");
    writeFileAtomically(root / "usr/share/dbus-1/system-services/com.varnholt.helper.service", "");
    const auto before = root.files();
    EXPECT_EQ(root.run("install"), "");
    EXPECT_THAT(root.run("uninstall"), HasSubstr("came with a package and goes with it."));
    EXPECT_EQ(root.files(), before);
}

TEST(HelperInstall, TheAuthorityKnowsEveryActionInThreeLanguages) {
    const HelperRoot root;
    ASSERT_EQ(root.run("install"), "");
    const std::string text = readFile(root / policy);
    std::set<std::string_view> actions;
    for (const ServiceMethod& method : helper::helperMethods)
        if (!method.action.empty())
            actions.insert(method.action);
    for (const std::string_view action : actions) {
        const size_t begin = text.find(fmt::format("<action id=\"{}\">", action));
        ASSERT_NE(begin, std::string::npos) << action;
        const std::string part = text.substr(begin, text.find("</action>", begin) - begin);
        for (const char* tag :
             {"<description>", "<description xml:lang=\"es\">", "<description xml:lang=\"fr\">", "<message>",
              "<message xml:lang=\"es\">", "<message xml:lang=\"fr\">"})
            EXPECT_THAT(part, HasSubstr(tag)) << action;
        EXPECT_THAT(part, Not(HasSubstr("<allow_any>yes"))) << action;
        EXPECT_THAT(part, HasSubstr("<allow_active>auth_admin")) << action;
    }
}

TEST(HelperInstall, TheProgramIsSmallAndSaysWhatItCannotDo) {
    const auto libraries = runProcess({{"ldd", VH_HELPER}});
    ASSERT_TRUE(libraries.succeeded()) << libraries.errors;
    std::vector<std::string> unwanted{"libQt", "libssl", "libcrypto.so", "libcurl", "libcairo", "libsecret"};
    // A build with sanitizers keeps code that nobody calls, and what that needs.
    if (libraries.output.find("san.so") == std::string::npos)
        unwanted.emplace_back("libicu");
    for (const std::string& name : unwanted)
        EXPECT_THAT(libraries.output, Not(HasSubstr(name)));
    const struct {
        std::vector<std::string> words;
        int status;
        const char* text;
    } cases[]{{{"--version"}, 0, "varnholt-helper "},
              {{"fly"}, 2, "Unknown word: fly"},
              {{"--idle", "soon"}, 2, "Not a number of seconds: soon"},
              {{"--root"}, 2, "--root needs a value."},
              {{}, 1, "Only root may serve the system bus."},
              {{"install"}, 1, "Only root may install the helper."}};
    const auto outcome = runUnprivileged([&] {
        for (const auto& each : cases) {
            ProcessRequest request{{VH_HELPER}};
            request.arguments.insert(request.arguments.end(), each.words.begin(), each.words.end());
            request.output = ProcessOutput::combined;
            const ProcessResult result = runProcess(request);
            EXPECT_EQ(result.status, each.status) << each.text;
            EXPECT_THAT(result.output, HasSubstr(each.text));
        }
    });
    EXPECT_EQ(outcome.status, 0) << outcome.message;
    const NoBus none;
    const ProcessResult result = runProcess({{VH_HELPER}});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, StartsWith("varnholt-helper: system bus"));
}

class HelperRegistration : public testing::Test {
protected:
    std::unique_ptr<ServiceRegistration> open() const {
        return openServiceRegistration(std::string(helper::identity::program),
                                       std::string(helper::identity::machServiceName), root_.path());
    }
    std::string errorOfAdding() const {
        try {
            open()->add();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no error";
    }

    HelperRoot root_;
    PrivateBus bus_{PrivateBus::Kind::system};
};

TEST_F(HelperRegistration, TellsHowTheSystemKnowsTheHelper) {
    using enum HelperRegistrationStatus;
    const auto registration = open();
    EXPECT_EQ(registration->status(), notRegistered);
    EXPECT_EQ(openServiceRegistration("varnholt-nothing", "com.varnholt.nothing", root_.path())->status(),
              notFound);
    registration->add();
    EXPECT_EQ(registration->status(), enabled);
    const std::string mask = root_ / "etc/systemd/system/varnholt-helper.service";
    makeFolders(fs::path(mask).parent_path());
    fs::create_symlink("/dev/null", mask);
    EXPECT_EQ(registration->status(), requiresApproval);
    fs::remove(mask);
    fs::remove(root_ / program);
    EXPECT_EQ(registration->status(), notRegistered) << "its program is gone";
    registration->remove();
    registration->remove();
    EXPECT_THAT(root_.files(), IsEmpty());
    bus_.stop();
    EXPECT_EQ(registration->status(), unknown);
}

TEST_F(HelperRegistration, AsksForTheRightAndSaysWhyItWasNotGiven) {
    const TempDir tools;
    fs::permissions(tools.path(), fs::perms(0755));
    fs::permissions(root_.path(), fs::perms(0777));
    const struct {
        const char* script; ///< that stands in for pkexec
        const char* text;
    } cases[]{{nullptr, "pkexec is missing. Type instead: sudo "},
              {"exit 126", "It was not allowed. Nothing was changed."},
              {"exit 127", "it was refused. Type instead: sudo "},
              {"echo No room >&2; exit 1", "No room"},
              {"shift; exec \"$@\"", "no error"}};
    const std::string file = tools / "pkexec";
    for (const auto& each : cases) {
        if (each.script != nullptr) {
            writeFileAtomically(file, fmt::format("#!/bin/sh\n{}\n", each.script));
            fs::permissions(file, fs::perms(0755));
        }
        const auto outcome = runUnprivileged([&] {
            ::setenv("PATH", tools.path().c_str(), 1);
            EXPECT_TRUE(open()->mustAsk());
            EXPECT_THAT(errorOfAdding(), HasSubstr(each.text));
        });
        EXPECT_EQ(outcome.status, 0) << each.text << outcome.message;
    }
    EXPECT_EQ(open()->status(), HelperRegistrationStatus::enabled);
}

} // namespace
} // namespace vh::test

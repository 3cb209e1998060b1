#include "HelperKit/MaintenanceRunner.h"

#include "Platform/Files.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

namespace vh::helper {

using namespace std::chrono_literals;
using test::TempDir;

namespace {

MaintenanceCommand shell(const std::string& script) {
    return {"/bin/sh", {"-c", script}};
}

std::string writeScript(const std::string& path, const std::string& body) {
    writeFileAtomically(path, "#!/bin/sh\n" + body + "\n");
    EXPECT_EQ(::chmod(path.c_str(), 0700), 0);
    return path;
}

} // namespace

TEST(MaintenanceRunner, runsUntilACommandDoesNotPass) {
    const TempDir folder;
    const std::string killall = writeScript(folder / "killall", "echo none; exit $1");
    MaintenanceCommand checked = shell("echo checked; exit 4");
    checked.alsoPasses = {3, 4};
    struct Case {
        std::vector<MaintenanceCommand> commands;
        bool succeeds;
        std::string_view output;
    };
    const Case cases[]{
        {{shell("echo ' one '; echo"), shell("true"), shell("echo two >&2")}, true, "one\ntwo"},
        {{shell("echo one; exit 3"), shell("echo two")}, false, "one\nexit 3"},
        {{shell("false")}, false, "exit 1"},
        {{{killall, {"1"}}, {killall, {"0"}}, shell("echo on")}, true, "none\nnone\non"},
        {{{killall, {"2"}}, shell("echo on")}, false, "none\nexit 2"},
        {{checked, shell("echo on")}, true, "checked\non"},
        {{shell("kill -HUP $$")}, false, "exit 129"},
        {{{"/no/such/program", {}}}, false, "/no/such/program: No such file or directory\nexit -1"},
        {{shell("printf 'caf\\303\\251 \\377\\303'")}, true, "café \uFFFD\uFFFD"},
        {{shell("echo $LC_ALL $DEBIAN_FRONTEND; cat")}, true, "C.UTF-8 noninteractive"},
    };
    for (const Case& each : cases) {
        const auto result = MaintenanceRunner::run({each.commands, {}, {}}, 10s);
        EXPECT_EQ(result.output, each.output);
        EXPECT_EQ(result.succeeded, each.succeeds) << each.output;
    }
    EXPECT_FALSE(MaintenanceRunner::run({{}, MaintenancePlan::Blocker::programs, {"x"}}, 1s).succeeded);
}

TEST(MaintenanceRunner, endsWhatDoesNotEnd) {
    const auto result =
        MaintenanceRunner::run({{shell("echo begun; sleep 1000"), shell("echo on")}, {}, {}}, 1s);
    EXPECT_FALSE(result.succeeded);
    EXPECT_EQ(result.output, "begun\ntimed out after 1");
}

TEST(MaintenanceRunner, keepsTheBeginningOfMuchOutput) {
    const auto result = MaintenanceRunner::run({{shell("yes | head -c 104857600; exit 5")}, {}, {}}, 60s);
    EXPECT_LT(result.output.size(), 2u << 20);
    EXPECT_TRUE(result.output.ends_with("y\nexit 5"));
}

TEST(MaintenanceRunner, stopsWhenAsked) {
    const TempDir folder;
    const CancelToken cancel;
    std::thread asker([&] {
        while (!readFileIfPresent(folder / "begun"))
            std::this_thread::yield();
        cancel.cancel();
    });
    const MaintenancePlan plan{{shell("touch " + (folder / "begun") + "; sleep 1000")}, {}, {}};
    EXPECT_THROW((void)MaintenanceRunner::run(plan, 60s, cancel), Cancelled);
    asker.join();
}

} // namespace vh::helper

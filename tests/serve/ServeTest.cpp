#include "Automation/ScriptLibrary.h"
#include "Platform/Files.h"
#include "serve/Home.h"

#include <chrono>
#include <csignal>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vh::test {

using namespace flows;
using testing::HasSubstr;

namespace {

constexpr const char* leading = "run from now on";

/// A script that says in a file who it is, and then goes on for a minute.
void saveLongScript(const Home& home) {
    automation::ScriptLibrary(automation::ScriptLibrary::folderOfUser())
        .save("long", fmt::format("echo $$ >> {0}/pids\necho one >> {0}/count\nsleep 60\n", home.path()));
}

bool isAlive(const std::string& pid) {
    return ::kill(std::stoi(pid), 0) == 0;
}

std::string lines(const Home& home, const char* file) {
    return readFileIfPresent(home / file).value_or("");
}

} // namespace

TEST(Serve, OneLeadsAndTheNextTakesOver) {
    Home home;
    Program first({"serve"});
    ASSERT_TRUE(first.waitForOutput(leading));
    Program second({"serve"});
    ASSERT_TRUE(second.waitForOutput("waiting"));
    first.signal(SIGKILL);
    EXPECT_EQ(first.wait(), 128 + SIGKILL);
    ASSERT_TRUE(second.waitForOutput(leading));
    const Uuid flow = home.flow("Outside", OnExternal{});
    EXPECT_EQ(Program({"open", "varnholt://flow/run?id=" + flow.text()}).wait(), 0);
    home.waitForRuns(flow, 1);
    EXPECT_THAT(second.output(), HasSubstr("Outside"));
    second.signal(SIGINT);
    EXPECT_EQ(second.wait(), 0);
}

TEST(Serve, EndsCleanlyInTheMiddleOfAScript) {
    Home home;
    saveLongScript(home);
    const Uuid flow = home.flow("Long", OnLaunch{}, {ScriptNode{"long"}});
    Program serve({"serve"});
    ASSERT_TRUE(waitUntil("the script", [&] { return !lines(home, "pids").empty(); }));
    const auto asked = std::chrono::steady_clock::now();
    serve.signal(SIGTERM);
    EXPECT_EQ(serve.wait(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(10));
    EXPECT_FALSE(isAlive(lines(home, "pids")));
    ASSERT_EQ(home.records("nodes").size(), 1U);
    EXPECT_EQ(home.records("nodes").front().outcome, Outcome::cancelled);
    EXPECT_EQ(home.runs(flow).size(), 1U);
}

TEST(Serve, KilledInTheMiddleOfAScheduledFlow) {
    Home home;
    saveLongScript(home);
    const Uuid flow = home.flow("Nightly", OnSchedule{DailySchedule{3, 0}, true}, {ScriptNode{"long"}});
    const std::string file = home.store().folder() + "/" + flow.text() + ".json";
    const std::string before = readFile(file);
    ASSERT_TRUE(home.schedules().change(
        flow, [&](ScheduledTask& task) { task.nextRun = systemNow() - std::chrono::hours(2); }));
    {
        Program serve({"serve"});
        ASSERT_TRUE(waitUntil("the script", [&] { return !lines(home, "pids").empty(); }));
        serve.signal(SIGKILL);
        EXPECT_EQ(serve.wait(), 128 + SIGKILL);
    }
    ::kill(std::stoi(lines(home, "pids")), SIGKILL);

    // What comes later than all that the start does shows that the task was not run again.
    const Uuid mark = home.flow("Mark", OnNewFiles{home.path(), {"mark"}, 0});
    const Program serve({"serve"});
    ASSERT_TRUE(serve.waitForOutput(leading));
    writeFileAtomically(home / "a.mark", "x");
    home.waitForRuns(mark, 1);

    EXPECT_EQ(lines(home, "count"), "one\n");
    EXPECT_EQ(readFile(file), before);
    const FlowRun run = home.waitForRuns(flow, 1).front();
    EXPECT_FALSE(run.finishedAt);
    const Flow* stored = home.store().flow(flow);
    ASSERT_TRUE(stored);
    EXPECT_EQ(run.results.size(), 3U) << "start, computer and wait had ended";
    const auto task = home.schedules().task(flow);
    ASSERT_TRUE(task);
    EXPECT_GT(task->nextRun, systemNow());
    EXPECT_EQ(task->lastOutcome, Outcome::failed);
    auto records = home.records("nodes");
    std::erase_if(records, [](const RunRecord& each) { return each.detail(RunDetail::flow) != "Nightly"; });
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records.front().outcome, Outcome::failed);
    EXPECT_EQ(records.front().trigger, Trigger::scheduled);
}

} // namespace vh::test

#include "Automation/ScriptLibrary.h"
#include "Core/Secrets.h"
#include "Mail/MailSettings.h"
#include "Platform/Files.h"
#include "Platform/Process.h"
#include "serve/Home.h"
#include "support/BackgroundProgram.h"
#include "support/PrivateBus.h"

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
    EXPECT_FALSE(isAlive(std::stoi(lines(home, "pids"))));
    ASSERT_EQ(home.records("nodes").size(), 1U);
    EXPECT_EQ(home.records("nodes").front().outcome, Outcome::cancelled);
    EXPECT_EQ(home.runs(flow).size(), 1U);
}

TEST(Serve, KilledInTheMiddleOfAScheduledFlow) {
    Home home;
    saveLongScript(home);
    const Uuid flow =
        home.flow("Nightly", OnSchedule{DailySchedule{3, 0}, true}, {WaitNode{1}, ScriptNode{"long"}});
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
    EXPECT_TRUE(
        waitUntil("the script goes with it", [&] { return !isAlive(std::stoi(lines(home, "pids"))); }));

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

TEST(Serve, FilesAreCopiedWorkedOnAndReportedByMail) {
    const NoBus bus;
    const TempDir post;
    const std::string certificate = post / "cert.pem";
    const std::string mails = post / "mails";
    makeFolders(mails);
    const ProcessResult made = runProcess(
        {.arguments = {"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                       "-nodes", "-days", "2", "-subj", "/CN=127.0.0.1", "-addext",
                       "subjectAltName=IP:127.0.0.1", "-keyout", post / "key.pem", "-out", certificate}});
    ASSERT_TRUE(made.succeeded()) << made.errors;
    const BackgroundProgram server({"/usr/bin/python3", VH_SOURCE_DIR "/tests/Mail/smtp-server", "starttls",
                                    certificate, post / "key.pem", mails});

    Home home;
    makeFolders(home / "in");
    mail::MailSettings{.host = "127.0.0.1",
                       .port = std::stoi(server.firstLine()),
                       .user = "ana",
                       .sender = "ana@example.org"}
        .store(home.defaults());
    home.defaults().set("mail.ca-file", certificate);
    openSecretStore(home / ".local/share/Varnholt/secrets.json")
        ->set(mail::passwordName, "Mail", "correct horse");
    automation::ScriptLibrary scripts(automation::ScriptLibrary::folderOfUser());
    scripts.save("take", "mkdir -p \"$HOME/Documents\" && mv \"$VARNHOLT_FILES\" \"$HOME/Documents\"\n");
    scripts.save("count", "wc -c < \"$HOME/Documents/report.txt\"\n");
    const FlowEmail mail{{"eva@example.org"}, "From {folder}", "All done.", true, true};
    const Uuid flow = home.flow("Inbox", OnNewFiles{home / "in", {"txt"}, 1},
                                {ScriptNode{"take"}, ScriptNode{"count"}, EmailNode{mail}});
    const Program serve({"serve"});
    ASSERT_TRUE(serve.waitForOutput(leading));
    writeFileAtomically(home / "in/report.txt", "twelve bytes");

    const FlowRun run = home.waitForRuns(flow, 1).front();
    EXPECT_EQ(run.outcome(*home.store().flow(flow)), FlowNodeOutcome::success);
    EXPECT_EQ(readFile(home / "Documents/report.txt"), "twelve bytes");
    const std::string received = readFile(mails + "/0.json");
    for (const char* part : {"eva@example.org", "All done.", "Ended with code 0", "From "})
        EXPECT_THAT(received, HasSubstr(part));
    EXPECT_THAT(received, testing::Not(HasSubstr("\"attachments\": {}")));
    EXPECT_EQ(home.records("nodes").size(), 1U);
}

} // namespace vh::test

#include "Platform/Process.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"
#include "support/ErrorOf.h"
#include "support/TempDir.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace vh;
using namespace vh::test;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

ProcessRequest shell(const std::string& script) {
    return {.arguments = {"sh", "-c", script}};
}

std::string startErrorOf(const ProcessRequest& request) {
    return errorOf([&] { (void)runProcess(request); });
}

bool isAlive(pid_t process) {
    return ::kill(process, 0) == 0;
}

/// Waits for a condition that must come true; false when it did not within ten seconds.
template <class Condition>
bool eventually(Condition condition) {
    for (const auto end = Clock::now() + 10s; Clock::now() < end; std::this_thread::sleep_for(2ms))
        if (condition())
            return true;
    return condition();
}

TEST(Process, movesMuchBothWaysWithoutStandstill) {
    ProcessRequest request{.arguments = {"cat"}};
    for (int i = 0; request.input.size() < 1 << 20; ++i)
        request.input += std::to_string(i) + "\n";
    EXPECT_EQ(runProcess(request).output, request.input);

    request.arguments = {"sh", "-c", "cat | tee /dev/stderr"};
    const ProcessResult both = runProcess(request);
    EXPECT_EQ(both.output, request.input);
    EXPECT_EQ(both.errors, request.input);

    request.arguments = {"true"}; // takes nothing of it
    EXPECT_TRUE(runProcess(request).succeeded());
}

TEST(Process, tellsHowItEnded) {
    EXPECT_EQ(runProcess(shell("exit 7")).status, 7);
    const ProcessResult killed = runProcess(shell("kill -9 $$"));
    EXPECT_EQ(killed.end, ProcessEnd::signalled);
    EXPECT_EQ(killed.status, SIGKILL);
    EXPECT_FALSE(killed.succeeded());
    const ProcessResult split = runProcess(shell("echo out; echo err >&2"));
    EXPECT_EQ(split.output, "out\n");
    EXPECT_EQ(split.errors, "err\n");
    ProcessRequest combined = shell("echo 1; echo 2 >&2; echo 3");
    combined.output = ProcessOutput::combined;
    EXPECT_EQ(runProcess(combined).output, "1\n2\n3\n");
}

TEST(Process, failsToStartWithTheReason) {
    const TempDir folder;
    std::ofstream(folder / "text") << "no program";
    const std::string text = folder / "text";
    EXPECT_EQ(startErrorOf({.arguments = {"no-such-program"}}), "no-such-program: No such file or directory");
    EXPECT_EQ(startErrorOf({.arguments = {text}}), text + ": Permission denied");
    ASSERT_EQ(::chmod(text.c_str(), 0700), 0);
    EXPECT_EQ(startErrorOf({.arguments = {text}}), text + ": Exec format error");
    EXPECT_EQ(startErrorOf({.arguments = {"true"}, .folder = folder / "none"}),
              (folder / "none") + ": No such file or directory");
    EXPECT_NE(startErrorOf({}), "no error");
}

TEST(Process, getsArgumentsEnvironmentAndFolderAsTheyAre) {
    const TempDir folder;
    ProcessRequest request{.arguments = {"printf", "%s|", "a b", "", "$HOME;*", "\xff\n"}};
    EXPECT_EQ(runProcess(request).output, "a b||$HOME;*|\xff\n|");
    request = shell("pwd; echo $ADDED; echo $HOME");
    ::setenv("ADDED", "before", 1);
    request.environment = {{"ADDED", "after"}};
    request.folder = folder.path();
    EXPECT_THAT(runProcess(request).output,
                testing::StartsWith(folder.path() + "\nafter\n" + ::getenv("HOME") + "\n"));
}

TEST(Process, inheritsNoOpenFiles) {
    const int leaked = ::open("/dev/null", O_RDONLY);
    const std::string output = runProcess({.arguments = {"ls", "/proc/self/fd"}}).output;
    ::close(leaked);
    EXPECT_EQ(output, "0\n1\n2\n3\n"); // 3 is what ls lists with
}

TEST(Process, startsWithoutTheSignalHandlingOfThisProcess) {
    sigset_t set;
    sigset_t before;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &set, &before);
    const auto handler = ::signal(SIGPIPE, SIG_IGN);
    const ProcessResult term = runProcess(shell("kill -TERM $$; echo survived"));
    const ProcessResult pipe = runProcess(shell("kill -PIPE $$; echo survived"));
    ::signal(SIGPIPE, handler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(term.status, SIGTERM);
    EXPECT_EQ(pipe.status, SIGPIPE);
}

TEST(Process, endsAtItsTimeLimit) {
    ProcessRequest polite = shell("trap 'echo bye; exit 0' TERM; echo ready; while :; do sleep 0.05; done");
    polite.timeLimit = 300ms;
    const ProcessResult asked = runProcess(polite);
    EXPECT_EQ(asked.end, ProcessEnd::timedOut);
    EXPECT_EQ(asked.output, "ready\nbye\n");
    EXPECT_FALSE(asked.succeeded());

    const TempDir folder;
    const std::string grandchild = "(trap '' TERM; exec sleep 1000) & echo $! > " + (folder / "id");
    for (const std::string& script :
         {"trap '' TERM; " + grandchild + "; wait; wait", grandchild + "; trap 'exit 9' TERM; wait"}) {
        ProcessRequest stubborn = shell(script);
        stubborn.timeLimit = 300ms;
        stubborn.grace = 200ms;
        const auto start = Clock::now();
        const ProcessResult killed = runProcess(stubborn);
        EXPECT_EQ(killed.end, ProcessEnd::timedOut);
        EXPECT_TRUE(killed.status == SIGKILL || killed.status == 9);
        EXPECT_GE(Clock::now() - start, 500ms);
        EXPECT_LT(Clock::now() - start, 5s);
        const std::string status = "/proc/" + std::to_string(std::stoi(readFile(folder / "id"))) + "/stat";
        EXPECT_TRUE(eventually([&] {
            const auto text = readFileIfPresent(status);
            return !text || text->find(") Z ") != std::string::npos;
        })) << script;
    }
}

TEST(Process, aGrandchildThatHoldsThePipeHangsNobody) {
    const TempDir folder;
    const auto start = Clock::now();
    const ProcessResult result = runProcess(shell("sleep 1000 & echo $!; exit 3"));
    EXPECT_LT(Clock::now() - start, 5s);
    EXPECT_EQ(result.end, ProcessEnd::exited);
    EXPECT_EQ(result.status, 3);
    const pid_t grandchild = std::stoi(result.output);
    EXPECT_TRUE(isAlive(grandchild)); // it was meant to go on
    ::kill(grandchild, SIGKILL);

    const auto noisy = Clock::now();
    const ProcessResult flooded = runProcess(shell("yes & echo $! >&2"));
    ::kill(std::stoi(flooded.errors), SIGKILL);
    EXPECT_LT(Clock::now() - noisy, 5s);
}

TEST(Process, isCancelledFromAnotherThread) {
    const CancelToken cancel;
    ProcessRequest request = shell("echo ready; exec sleep 1000");
    request.onOutput = [&](std::string_view) {
        cancel.cancel();
    };
    const auto start = Clock::now();
    EXPECT_EQ(runProcess(request, cancel).end, ProcessEnd::cancelled);
    EXPECT_LT(Clock::now() - start, 2s);

    const CancelToken silent;
    std::thread canceller([&] { silent.cancel(); });
    EXPECT_EQ(runProcess(shell("exec >/dev/null 2>&1 </dev/null; exec sleep 1000"), silent).end,
              ProcessEnd::cancelled);
    canceller.join();
}

TEST(Process, dropsWhatIsTooMuchAndDiesWithAThrowingListener) {
    ProcessRequest request = shell("head -c 300000 /dev/zero");
    request.maxOutputBytes = 1000;
    size_t heard = 0;
    request.onOutput = [&](std::string_view piece) {
        heard += piece.size();
    };
    EXPECT_EQ(runProcess(request).output.size(), 1000u);
    EXPECT_EQ(heard, 300000u);

    ProcessRequest throwing = shell("echo $$; exec sleep 1000");
    pid_t child = 0;
    throwing.onOutput = [&](std::string_view piece) {
        child = std::stoi(std::string(piece));
        throw std::runtime_error("enough");
    };
    const size_t before = childNames("/proc/self/fd").size();
    EXPECT_THROW((void)runProcess(throwing), std::runtime_error);
    EXPECT_FALSE(isAlive(child));
    EXPECT_EQ(childNames("/proc/self/fd").size(), before);
}

TEST(Process, programsAreFoundInPathAlone) {
    const TempDir folder;
    std::ofstream(folder / "tool") << "#!/bin/sh\necho found\n";
    const std::string path = ::getenv("PATH");
    ::setenv("PATH", ("::" + folder.path() + ":" + path).c_str(), 1);
    EXPECT_EQ(findProgram("tool"), std::nullopt);
    ASSERT_EQ(::chmod((folder / "tool").c_str(), 0755), 0);
    EXPECT_EQ(findProgram("tool"), folder / "tool");
    EXPECT_EQ(runProcess({.arguments = {"tool"}}).output, "found\n");
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(findProgram("tool"), std::nullopt);
    EXPECT_EQ(findProgram(folder / "tool"), folder / "tool");
    EXPECT_EQ(findProgram(""), std::nullopt);
}

} // namespace

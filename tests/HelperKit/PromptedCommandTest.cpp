#include "HelperKit/PromptedCommand.h"

#include <gtest/gtest.h>

namespace vh::helper {

using namespace std::chrono_literals;
using Answer = PromptedCommand::Answer;

namespace {

PromptedCommand::Result runShell(const std::string& script, std::vector<Answer> answers,
                                 std::chrono::milliseconds timeout = 10s) {
    return PromptedCommand::run({"/bin/sh", {"-c", script}, std::move(answers)}, timeout);
}

/// Asks as programs do that want a person: at the terminal, whatever its streams are.
const std::string askTwice = "exec </dev/tty >/dev/tty; printf 'New password for ana: '; read a; echo; "
                             "printf 'Retype new password: '; read b; echo; "
                             "[ \"$a\" = \"$b\" ] && echo changed && exit 0; echo 'no match'; exit 7";

} // namespace

TEST(PromptedCommand, answersInTurn) {
    const auto done = runShell(askTwice, {{"new PASSWORD", "pässwort 1"}, {"retype", "pässwort 1"}});
    EXPECT_EQ(done.output, "New password for ana: \nRetype new password: \nchanged");
    EXPECT_EQ(done.status, 0);

    const auto wrong = runShell(askTwice, {{"new password", "one"}, {"retype", "two"}});
    EXPECT_EQ(wrong.status, 7);
    EXPECT_TRUE(wrong.output.ends_with("no match"));
}

TEST(PromptedCommand, takesAPromptThatComesInPieces) {
    const auto done =
        runShell("printf 'Pass'; sleep 0.1; printf 'word'; sleep 0.1; printf ': '; read a; echo; "
                 "test \"$a\" = right && echo in",
                 {{"password:", "right"}});
    EXPECT_EQ(done.output, "Password: \nin");
}

TEST(PromptedCommand, aPromptThatComesAgainIsNotAnsweredAgain) {
    const auto done = runShell("while [ \"$a\" != right ]; do printf 'Password: '; read a; echo; done",
                               {{"password", "wrong"}}, 500ms);
    EXPECT_EQ(done.status, -1);
    EXPECT_EQ(done.output, "Password: \nPassword:");
}

TEST(PromptedCommand, endsWhatNeverAsks) {
    const auto start = std::chrono::steady_clock::now();
    const auto polite =
        runShell("trap 'exit 0' TERM; while :; do sleep 0.05; done", {{"password", "x"}}, 200ms);
    EXPECT_EQ(polite.status, -1);
    const auto deaf = runShell("trap '' TERM HUP; while :; do sleep 0.1; done", {}, 200ms);
    EXPECT_EQ(deaf.status, -1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 5s);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 9s);
}

TEST(PromptedCommand, typesNoKeysAndStartsNothingThatIsNotThere) {
    EXPECT_EQ(runShell("echo ran", {{"x", "two\nlines"}}).status, -1);
    EXPECT_EQ(PromptedCommand::run({"/no/such/program", {}, {}}, 1s).output,
              "/no/such/program: No such file or directory");
    EXPECT_EQ(runShell("yes prompt | head -c 20000000", {{"nothing like it", "x"}}).status, 0);
}

} // namespace vh::helper

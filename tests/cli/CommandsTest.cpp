#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Completions.h"
#include "cli/WordReader.h"
#include "support/Sandbox.h"

#include <gmock/gmock.h>
#include <set>
#include <sstream>

namespace vh::cli {
namespace {

using testing::HasSubstr;

class Commands : public testing::Test {
protected:
    junk::test::Sandbox sandbox_;
    app::Session session_;
    CommandLine line_{session_};
    Verb program_ = line_.program();
};

void expectSound(const Verb& verb) {
    EXPECT_TRUE(verb.action || !verb.verbs().empty()) << verb.path() << " does nothing";
    EXPECT_FALSE(verb.help().empty()) << verb.path();
    std::set<std::string> names{"--help", "-h"};
    for (const auto& option : verb.options()) {
        EXPECT_TRUE(names.insert(option->name).second) << verb.path() << " has " << option->name << " twice";
        if (option->letter) {
            EXPECT_TRUE(names.insert({'-', option->letter}).second)
                << verb.path() << " has -" << option->letter << " twice";
        }
        const bool isNumber = std::holds_alternative<int*>(option->target) ||
                              std::holds_alternative<std::optional<int>*>(option->target);
        EXPECT_EQ(isNumber, option->least < option->most) << verb.path() << " " << option->name;
    }
    for (size_t i = 0; i + 1 < verb.arguments().size(); ++i)
        EXPECT_FALSE(verb.arguments()[i]->takesMany) << verb.path() << ": nothing is left for the next";
    for (const auto& each : verb.verbs())
        expectSound(*each);
}

TEST_F(Commands, AreDescribedSoundly) {
    expectSound(program_);
}

TEST_F(Commands, ReadTheirOwnExamples) {
    int read = 0;
    for (const auto& noun : program_.verbs())
        for (const std::string& example : noun->examples()) {
            std::istringstream typed(example.substr(0, example.find('>')));
            std::vector<std::string> words{std::istream_iterator<std::string>(typed), {}};
            if (words.front() != program_.name())
                continue;
            std::vector<const char*> rest;
            for (size_t i = 1; i < words.size(); ++i)
                rest.push_back(words[i].c_str());
            EXPECT_NO_THROW({
                const Asked asked = readWords(program_, rest, session_.texts());
                EXPECT_TRUE(asked.verb.action) << example;
                EXPECT_TRUE(asked.verb.path().starts_with(noun->path())) << example;
            }) << example;
            ++read;
        }
    EXPECT_GT(read, 10);
}

TEST_F(Commands, AreOfferedByTheShells) {
    EXPECT_THAT(bashCompletions(program_), HasSubstr("'varnholt runs prune --keep') words='days30 "));
    EXPECT_THAT(fishCompletions(program_), HasSubstr(" -l keep -x -a 'days30 "));
}

} // namespace
} // namespace vh::cli

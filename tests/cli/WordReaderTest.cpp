#include "cli/WordReader.h"

#include "Core/Texts.h"
#include "cli/UsageError.h"

#include <gmock/gmock.h>

namespace vh::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class WordReader : public testing::Test {
protected:
    WordReader() {
        Verb& copy = program_.verb("copy", "");
        copy.argument("SOURCE", &sources_, "");
        copy.option("--to", &places_, "").many();
        copy.option("--only", &only_, "");
        copy.option("--verify", &verify_, "").shortly('v');
        copy.option("--output", &output_, "").shortly('o');
        copy.option("--watch", &watch_, "");
        copy.option("--level", &level_, "").range(-3, 9);
        copy.option("--count", &count_, "").range(0, 9);
        copy.verb("verify", "").argument("LIST", &list_, "").required();
    }

    /// The path of the verb that the words name.
    std::string read(std::vector<const char*> words) {
        return readWords(program_, words, Texts(Language::en)).verb.path();
    }
    std::string faultOf(std::vector<const char*> words) {
        try {
            read(std::move(words));
        } catch (const UsageError& error) {
            return error.what();
        }
        return "";
    }

    Verb program_{"program", ""};
    std::vector<std::string> sources_, places_, only_;
    bool verify_ = false;
    std::optional<std::string> output_;
    std::optional<bool> watch_;
    std::optional<int> level_;
    int count_ = 5;
    std::string list_;
};

TEST_F(WordReader, KnowsEveryWayToSayAnOption) {
    EXPECT_EQ(read({"copy", "a", "-vo", "x", "b"}), "program copy");
    EXPECT_TRUE(verify_);
    EXPECT_EQ(output_, "x");
    EXPECT_THAT(sources_, ElementsAre("a", "b"));
    read({"copy", "-oy=z"});
    EXPECT_EQ(output_, "y=z");
    read({"copy", "--output=a=b", "--no-watch", "--level", "-3", "--count=0"});
    EXPECT_EQ(output_, "a=b");
    EXPECT_EQ(watch_, false);
    EXPECT_EQ(level_, -3);
    EXPECT_EQ(count_, 0);
    read({"copy", "--output=", "--watch"});
    EXPECT_EQ(output_, "");
    EXPECT_EQ(watch_, true);
}

TEST_F(WordReader, GivesAListTheWordsUpToTheNextOptionOrVerb) {
    read({"copy", "a", "--to", "b", "c", "-v", "d", "--to", "e"});
    EXPECT_THAT(places_, ElementsAre("b", "c", "e"));
    EXPECT_THAT(sources_, ElementsAre("a", "d"));
    read({"copy", "--only", "f", "g"});
    EXPECT_THAT(only_, ElementsAre("f"));
    EXPECT_EQ(read({"copy", "--to", "h", "verify", "list"}), "program copy verify");
    EXPECT_EQ(list_, "list");
}

TEST_F(WordReader, TakesAnythingForAnArgumentBehindTwoDashes) {
    EXPECT_EQ(read({"copy", "-", "--", "-v", "verify", "--", ""}), "program copy");
    EXPECT_THAT(sources_, ElementsAre("-", "-v", "verify", "--", ""));
    EXPECT_FALSE(verify_);
}

TEST_F(WordReader, ShowsHelpOfWhatIsNamedThoughWordsAreMissing) {
    const std::vector<const char*> words{"copy", "verify", "-h"};
    const Asked asked = readWords(program_, words, Texts(Language::en));
    EXPECT_TRUE(asked.help);
    EXPECT_EQ(asked.verb.name(), "verify");
    EXPECT_THAT(faultOf({"copy", "--version"}), HasSubstr("no such option"));
}

TEST_F(WordReader, RefusesWhatItCannotRead) {
    const std::pair<std::vector<const char*>, const char*> cases[] = {
        {{"cpy"}, "Did you mean copy?"},
        {{"copy", "--verfiy"}, "Did you mean --verify?"},
        {{"copy", "--no-wacth"}, "Did you mean --no-watch?"},
        {{"copy", "--no-verify"}, "no such option"},
        {{"copy", "-vx"}, "-vx"},
        {{"copy", "--output", "--verify"}, "--output needs a value"},
        {{"copy", "-o"}, "-o needs a value"},
        {{"copy", "--verify=no"}, "takes no value"},
        {{"copy", "--level", "10"}, "from -3 to 9"},
        {{"copy", "--level", "+1"}, "not a whole number"},
        {{"copy", "--level", "1 "}, "not a whole number"},
        {{"copy", "verify"}, "LIST is missing"},
        {{"copy", "verify", "a", "b"}, "b: one word too many"},
    };
    for (const auto& [words, fault] : cases)
        EXPECT_THAT(faultOf(words), HasSubstr(fault));
    const std::string endless(100'000, 'x');
    EXPECT_THAT(faultOf({endless.c_str()}), HasSubstr("no such command"));
}

TEST(NearestWord, IsNoneThatIsFar) {
    const std::vector<std::string> words{"sync", "script", "schedule"};
    EXPECT_EQ(nearestWord("snyc", words), "sync");
    EXPECT_EQ(nearestWord("shedule", words), "schedule");
    EXPECT_THAT(nearestWord("tidy", words), IsEmpty());
    EXPECT_THAT(nearestWord("", words), IsEmpty());
}

} // namespace
} // namespace vh::cli

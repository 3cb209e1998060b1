#include "cli/WordReader.h"

#include "Core/Printable.h"
#include "Core/Texts.h"
#include "cli/UsageError.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <numeric>
#include <set>

namespace vh::cli {

namespace {

/// How many letters have to be typed, removed, changed or exchanged with their neighbour.
size_t typingErrors(std::string_view one, std::string_view other) {
    std::vector<size_t> above(other.size() + 1), before, row(other.size() + 1);
    std::iota(above.begin(), above.end(), size_t{0});
    for (size_t i = 1; i <= one.size(); ++i) {
        row[0] = i;
        for (size_t j = 1; j <= other.size(); ++j) {
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (one[i - 1] != other[j - 1])});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        before = std::exchange(above, row);
    }
    return above.back();
}

class WordReader {
public:
    WordReader(const Verb& program, std::span<const char* const> words, const Texts& texts)
        : verb_(&program), left_(words), texts_(texts) {}

    Asked read();

private:
    void readOption(const std::string& word);
    void readLetters(const std::string& word);
    void readBare(const std::string& word);
    /// `attached`: what stands behind "=" or a letter.
    void take(const Option& option, const std::string& said, std::optional<std::string> attached);
    void store(const Option& option, const std::string& word);
    int numberOf(const Option& option, const std::string& word) const;
    void checkComplete() const;

    const Verb* verbNamed(std::string_view word) const;
    bool startsOption() const { return std::string_view(left_.front()).starts_with('-') && left_.front()[1]; }
    std::string next() {
        std::string word = left_.front();
        left_ = left_.subspan(1);
        return word;
    }
    [[noreturn]] void fail(std::string_view key, const std::vector<TextArgument>& arguments,
                           const std::string& nearest = {}) const;
    [[noreturn]] void failName(const std::string& word) const;

    const Verb* verb_;
    std::span<const char* const> left_;
    const Texts& texts_;
    std::set<std::string> said_; ///< names of options and arguments
    size_t place_ = 0;           ///< of the next argument
    bool onlyArguments_ = false;
    bool help_ = false, version_ = false;
};

void WordReader::fail(std::string_view key, const std::vector<TextArgument>& arguments,
                      const std::string& nearest) const {
    std::string message = texts_.text(key, arguments);
    if (!nearest.empty())
        message += " " + texts_.text("cli.usage.nearest", {{"word", nearest}});
    throw UsageError(message + " " + texts_.text("cli.usage.more", {{"command", verb_->path() + " --help"}}));
}

void WordReader::failName(const std::string& word) const {
    std::vector<std::string> names{"--help"};
    for (const auto& each : verb_->options()) {
        names.push_back(each->name);
        if (each->isSwitch())
            names.push_back("--no-" + each->name.substr(2));
    }
    fail("cli.usage.no-option", {{"word", printable(word)}}, nearestWord(word, names));
}

int WordReader::numberOf(const Option& option, const std::string& word) const {
    int number = 0;
    const char* end = word.data() + word.size();
    const auto [rest, error] = std::from_chars(word.data(), end, number);
    if (error != std::errc() || rest != end || number < option.least || number > option.most)
        fail("cli.usage.number", {{"option", option.name},
                                  {"word", printable(word)},
                                  {"least", option.least},
                                  {"most", option.most}});
    return number;
}

void WordReader::store(const Option& option, const std::string& word) {
    if (!option.words.empty() && std::ranges::find(option.words, word) == option.words.end())
        fail("cli.usage.none-of",
             {{"word", (option.isArgument() ? "" : option.name + " ") + printable(word)},
              {"words", fmt::format("{}", fmt::join(option.words, ", "))}},
             nearestWord(word, option.words));
    std::visit(
        [&]<class T>(T* target) {
            if constexpr (std::is_same_v<T, std::vector<std::string>>)
                target->push_back(word);
            else if constexpr (std::is_same_v<T, int> || std::is_same_v<T, std::optional<int>>)
                *target = numberOf(option, word);
            else if constexpr (std::is_same_v<T, std::string> ||
                               std::is_same_v<T, std::optional<std::string>>)
                *target = word;
        },
        option.target);
}

void WordReader::take(const Option& option, const std::string& said, std::optional<std::string> attached) {
    said_.insert(option.name);
    if (option.isFlag()) {
        if (attached)
            fail("cli.usage.no-value", {{"option", said}});
        if (const auto* flag = std::get_if<bool*>(&option.target))
            **flag = true;
        else
            *std::get<std::optional<bool>*>(option.target) = !said.starts_with("--no-");
        return;
    }
    const auto isNumber = [&] { // "-1" is no option
        return left_.front()[1] >= '0' && left_.front()[1] <= '9';
    };
    if (attached)
        store(option, *attached);
    else if (left_.empty() || (startsOption() && !isNumber()))
        fail("cli.usage.needs-value", {{"option", said}});
    else
        store(option, next());
    while (option.takesMany && !attached && !left_.empty() && !startsOption() && !verbNamed(left_.front()))
        store(option, next());
}

void WordReader::readOption(const std::string& word) {
    const size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const auto value = equals == std::string::npos ? std::nullopt : std::optional(word.substr(equals + 1));
    if (name == "--help")
        help_ = true;
    else if (name == "--version" && verb_->path() == verb_->name())
        version_ = true;
    else {
        const auto found = std::ranges::find_if(verb_->options(), [&](const auto& each) {
            return each->name == name || (each->isSwitch() && "--no-" + each->name.substr(2) == name);
        });
        if (found == verb_->options().end())
            failName(name);
        take(**found, name, value);
    }
}

void WordReader::readLetters(const std::string& word) {
    for (size_t i = 1; i < word.size(); ++i) {
        if (word[i] == 'h') {
            help_ = true;
            continue;
        }
        const auto found =
            std::ranges::find(verb_->options(), word[i], [](const auto& each) { return each->letter; });
        if (found == verb_->options().end())
            failName(word);
        const bool endsHere = (*found)->isFlag() || i + 1 == word.size();
        take(**found, {'-', word[i]}, endsHere ? std::nullopt : std::optional(word.substr(i + 1)));
        if (!(*found)->isFlag())
            return;
    }
}

const Verb* WordReader::verbNamed(std::string_view word) const {
    for (const auto& each : verb_->verbs())
        if (each->name() == word)
            return each.get();
    return nullptr;
}

void WordReader::readBare(const std::string& word) {
    if (const Verb* verb = onlyArguments_ ? nullptr : verbNamed(word)) {
        verb_ = verb;
        place_ = 0;
    } else if (place_ < verb_->arguments().size()) {
        const Option& argument = *verb_->arguments()[place_];
        said_.insert(argument.name);
        store(argument, word);
        place_ += argument.takesMany ? 0 : 1;
    } else if (verb_->verbs().empty()) {
        fail("cli.usage.too-many", {{"word", printable(word)}});
    } else {
        std::vector<std::string> names;
        for (const auto& each : verb_->verbs())
            names.push_back(each->name());
        fail("cli.usage.no-command", {{"word", printable(word)}}, nearestWord(word, names));
    }
}

void WordReader::checkComplete() const {
    for (const auto* list : {&verb_->arguments(), &verb_->options()})
        for (const auto& each : *list) {
            const bool isSaid = said_.contains(each->name);
            if (each->isRequired && !isSaid)
                fail("cli.usage.missing", {{"name", each->name}});
            for (const std::string& other : each->adversary)
                if (isSaid && said_.contains(other))
                    fail("cli.usage.not-together", {{"one", each->name}, {"other", other}});
        }
}

Asked WordReader::read() {
    while (!left_.empty()) {
        const bool isOption = !onlyArguments_ && startsOption();
        const std::string word = next();
        if (!isOption)
            readBare(word);
        else if (word == "--")
            onlyArguments_ = true;
        else if (word.starts_with("--"))
            readOption(word);
        else
            readLetters(word);
    }
    if (!help_ && !version_)
        checkComplete();
    return {*verb_, help_, version_};
}

} // namespace

std::string nearestWord(const std::string& word, const std::vector<std::string>& candidates) {
    constexpr size_t lettersAnError = 3, longest = 64;
    std::string nearest;
    size_t fewest = std::min(word.size(), longest) / lettersAnError + 1;
    for (const std::string& each : candidates)
        if (const size_t errors = word.size() > longest ? fewest : typingErrors(word, each);
            errors < fewest) {
            fewest = errors;
            nearest = each;
        }
    return nearest;
}

Asked readWords(const Verb& program, std::span<const char* const> words, const Texts& texts) {
    return WordReader(program, words, texts).read();
}

} // namespace vh::cli

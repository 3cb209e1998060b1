#include "Tools/SystemJunk/TemporaryRule.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/PathParts.h"
#include "Platform/SystemError.h"
#include "Tools/SystemJunk/Places.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace vh::junk {

namespace {

using std::chrono::seconds;

constexpr seconds usualAge = std::chrono::days(10);
constexpr seconds longLivedAge = std::chrono::days(30);
/// Later ones stand behind earlier ones of the same file name.
constexpr std::array configurationFolders{"/etc/tmpfiles.d", "/run/tmpfiles.d", "/usr/local/lib/tmpfiles.d",
                                          "/usr/lib/tmpfiles.d"};

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// The words of a line; one in double quotes may hold blanks.
std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    while (true) {
        while (!line.empty() && isBlank(line.front()))
            line.remove_prefix(1);
        if (line.empty())
            return words;
        const bool isQuoted = line.front() == '"';
        const size_t begin = isQuoted ? 1 : 0;
        const size_t end = std::min(line.find_first_of(isQuoted ? "\"" : " \t", begin), line.size());
        words.push_back(line.substr(begin, end - begin));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
}

std::optional<seconds> unitOf(std::string_view text) {
    struct Unit {
        std::string_view name;
        seconds length;
    };
    static constexpr std::array units{Unit{"", seconds(1)},
                                      Unit{"s", seconds(1)},
                                      Unit{"min", std::chrono::minutes(1)},
                                      Unit{"m", std::chrono::minutes(1)},
                                      Unit{"h", std::chrono::hours(1)},
                                      Unit{"d", std::chrono::days(1)},
                                      Unit{"w", std::chrono::weeks(1)},
                                      Unit{"ms", seconds(0)},
                                      Unit{"us", seconds(0)}};
    const auto found = std::ranges::find(units, text, &Unit::name);
    return found == units.end() ? std::nullopt : std::optional(found->length);
}

/// Up to the first place where anything may stand.
std::string fixedPart(std::string_view pattern) {
    return std::string(pattern.substr(0, pattern.find_first_of("*?[%")));
}

} // namespace

std::optional<seconds> tmpfilesAge(std::string_view text) {
    if (const size_t colon = text.find(':'); colon != std::string_view::npos)
        text.remove_prefix(colon + 1);
    if (text.starts_with('~'))
        text.remove_prefix(1);
    seconds age{0};
    bool isAge = false;
    while (!text.empty()) {
        if (isBlank(text.front())) {
            text.remove_prefix(1);
            continue;
        }
        uint32_t count = 0;
        const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), count);
        if (error != std::errc())
            return std::nullopt;
        text.remove_prefix(static_cast<size_t>(rest - text.data()));
        const size_t end = std::min(text.find_first_of("0123456789 \t"), text.size());
        const auto unit = unitOf(text.substr(0, end));
        if (!unit)
            return std::nullopt;
        age += count * *unit;
        text.remove_prefix(end);
        isAge = true;
    }
    return isAge ? std::optional(age) : std::nullopt;
}

bool TemporaryRule::keeps(std::string_view path) const {
    return std::ranges::any_of(kept, [&](const std::string& each) { return path.starts_with(each); });
}

TemporaryRule TemporaryRule::of(std::string_view folder, const std::map<std::string, std::string>& files) {
    TemporaryRule rule{folder == "/var/tmp" ? longLivedAge : usualAge, {}};
    for (const auto& [name, text] : files)
        for (std::string_view rest = text; !rest.empty();) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(std::min(line.size() + 1, rest.size()));
            const auto words = wordsOf(line);
            if (words.size() < 2 || words[0].starts_with('#'))
                continue;
            if ((words[0][0] == 'x' || words[0][0] == 'X') && isAtOrBelow(words[1], folder))
                rule.kept.push_back(fixedPart(words[1]));
            else if (words.size() > 5 && words[1] == folder)
                rule.age = tmpfilesAge(words[5]).value_or(rule.age);
        }
    return rule;
}

TemporaryRule TemporaryRule::ofSystem(std::string_view folder) {
    std::map<std::string, std::string> files;
    for (const char* place : configurationFolders) {
        try {
            for (const std::string& name : childNames(place))
                if (name.ends_with(".conf") && !files.contains(name))
                    files[name] = readFileIfPresent(std::string(place) + "/" + name).value_or("");
        } catch (const SystemError&) {
            continue; // a system need not have it
        }
    }
    return of(folder, files);
}

} // namespace vh::junk

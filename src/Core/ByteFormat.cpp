#include "Core/ByteFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>

namespace vh {

namespace {

struct Words {
    std::string_view oneByte;
    std::string_view bytes;
    bool zeroIsSingular;
    std::array<std::string_view, 6> units;
    std::string_view day;
    char decimalSeparator;
};

const Words& wordsOf(Language language) {
    static constexpr Words english{"byte", "bytes", false, {"kB", "MB", "GB", "TB", "PB", "EB"}, "d", '.'};
    static constexpr Words spanish{"byte", "bytes", false, {"kB", "MB", "GB", "TB", "PB", "EB"}, "d", ','};
    static constexpr Words french{"octet", "octets", true, {"ko", "Mo", "Go", "To", "Po", "Eo"}, "j", ','};
    switch (language) {
    case Language::en:
        return english;
    case Language::es:
        return spanish;
    case Language::fr:
        return french;
    }
    return english;
}

/// At most one decimal, left out when it is zero.
std::string number(double value, int decimals, char separator) {
    std::string text = fmt::format("{:.{}f}", value, decimals);
    if (text.ends_with(".0"))
        text.resize(text.size() - 2);
    if (auto point = text.find('.'); point != std::string::npos)
        text[point] = separator;
    return text;
}

/// 0 is kB, 1 is MB, …
int decimalsOf(double value, size_t unit) {
    if (unit == 0)
        return 0;
    const double limit = unit == 1 ? 10 : 100;
    return value < limit - 0.05 ? 1 : 0;
}

} // namespace

std::string sizeText(int64_t bytes, Language language) {
    const Words& words = wordsOf(language);
    const double magnitude = std::fabs(static_cast<double>(bytes));
    const bool isOne = magnitude == 1 || (bytes == 0 && words.zeroIsSingular);
    if (magnitude < 1000)
        return fmt::format("{} {}", bytes, isOne ? words.oneByte : words.bytes);
    size_t unit = 0;
    double value = magnitude / 1000;
    // 999.5 is already shown as 1000.
    while (value >= 999.5 && unit + 1 < words.units.size()) {
        value /= 1000;
        ++unit;
    }
    return fmt::format("{}{} {}", bytes < 0 ? "-" : "",
                       number(value, decimalsOf(value, unit), words.decimalSeparator), words.units[unit]);
}

std::string rateText(double bytesPerSecond, Language language) {
    constexpr double most = 9e18;
    const double rate = bytesPerSecond > 0 ? std::min(bytesPerSecond, most) : 0;
    return sizeText(std::llround(rate), language) + "/s";
}

std::string durationText(double seconds, Language language) {
    const Words& words = wordsOf(language);
    const double length = seconds > 0 ? std::min(seconds, 1e12) : 0;
    if (length < 9.95)
        return number(length, 1, words.decimalSeparator) + " s";
    const int64_t whole = std::llround(length);
    struct Unit {
        int64_t seconds;
        std::string_view name;
    };
    const std::array<Unit, 4> units{{{86400, words.day}, {3600, "h"}, {60, "min"}, {1, "s"}}};
    size_t first = 0;
    while (whole < units[first].seconds)
        ++first;
    std::string text = fmt::format("{} {}", whole / units[first].seconds, units[first].name);
    if (first + 1 < units.size()) {
        const int64_t rest = whole % units[first].seconds / units[first + 1].seconds;
        if (rest > 0)
            text += fmt::format(" {} {}", rest, units[first + 1].name);
    }
    return text;
}

} // namespace vh

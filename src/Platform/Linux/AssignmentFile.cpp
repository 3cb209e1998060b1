#include "Platform/Linux/AssignmentFile.h"

#include "Platform/Blank.h"

namespace vh {

namespace {

std::string unquoted(std::string_view value) {
    std::string result;
    char quote = '\0';
    for (size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if (c == '\\' && quote != '\'' && i + 1 < value.size())
            result += value[++i];
        else if (quote == '\0' && (c == '"' || c == '\''))
            quote = c;
        else if (c == quote && quote != '\0')
            quote = '\0';
        else
            result += c;
    }
    return result;
}

} // namespace

std::string assignedValue(std::string_view text, std::string_view key) {
    std::string value;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with(key) && line.substr(key.size()).starts_with('='))
            value = unquoted(line.substr(key.size() + 1));
    }
    return value;
}

} // namespace vh

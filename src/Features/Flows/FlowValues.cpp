#include "Features/Flows/FlowValues.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh::flows {

namespace {

/// A disk may be called anything; as a part of a path its name must stay one name.
std::string asFileName(std::string name) {
    if (name == "." || name == "..")
        return "_";
    std::ranges::replace(name, '/', ':');
    return name;
}

LocalCalendar calendarOf(const std::string& zone) {
    try {
        return zone.empty() ? LocalCalendar() : LocalCalendar(zone);
    } catch (const std::invalid_argument&) {
        return LocalCalendar(); // a zone that only the computer knew on which the run began
    }
}

std::string_view trimmedSpaces(std::string_view text) {
    const size_t first = std::min(text.find_first_not_of(' '), text.size());
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

} // namespace

std::optional<std::vector<std::string>> FlowValues::value(FlowVariable variable) const {
    const auto single = [](const std::optional<std::string>& text) {
        return text ? std::optional(std::vector{*text}) : std::nullopt;
    };
    switch (variable) {
    case FlowVariable::disk:
        return single(disk);
    case FlowVariable::diskName:
        return single(diskName ? std::optional(asFileName(*diskName)) : std::nullopt);
    case FlowVariable::files:
        return files;
    case FlowVariable::folder:
        return single(folder);
    case FlowVariable::date:
    case FlowVariable::time:
        break;
    }
    const WallTime wall = calendarOf(timeZone).wallTime(date);
    // No colon in the time: it may become part of a file's name.
    return std::vector{variable == FlowVariable::date
                           ? fmt::format("{:04}-{:02}-{:02}", wall.year, wall.month, wall.day)
                           : fmt::format("{:02}-{:02}", wall.hour, wall.minute)};
}

std::string FlowValues::expand(std::string_view text) const {
    std::string expanded;
    for (const FlowPiece& piece : piecesOf(text)) {
        if (!piece.variable) {
            expanded += piece.text;
            continue;
        }
        const auto values = value(*piece.variable);
        if (!values)
            throw NoValue(piece.text);
        for (size_t i = 0; i < values->size(); ++i)
            expanded += (i > 0 ? ", " : "") + (*values)[i];
    }
    return expanded;
}

std::vector<std::string> FlowValues::expandList(const std::vector<std::string>& list) const {
    std::vector<std::string> expanded;
    for (const std::string& entry : list) {
        const std::string_view trimmed = trimmedSpaces(entry);
        const auto pieces = piecesOf(trimmed);
        if (pieces.size() != 1 || pieces[0].variable != FlowVariable::files) {
            expanded.push_back(expand(trimmed));
            continue;
        }
        if (!files)
            throw NoValue(pieces[0].text);
        expanded.insert(expanded.end(), files->begin(), files->end());
    }
    return expanded;
}

} // namespace vh::flows

#include "Core/Csv.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>
#include <unicode/dcfmtsym.h>

namespace vh {

namespace {

std::string_view takeDigits(std::string_view& text) {
    const std::string_view digits =
        text.substr(0, std::min(text.find_first_not_of("0123456789"), text.size()));
    text.remove_prefix(digits.size());
    return digits;
}

bool take(std::string_view& text, std::string_view anyOf) {
    if (text.empty() || anyOf.find(text.front()) == std::string_view::npos)
        return false;
    text.remove_prefix(1);
    return true;
}

/// With a point or a comma, as either spreadsheet writes it.
bool isNumber(std::string_view text) {
    take(text, "+-");
    size_t digits = takeDigits(text).size();
    if (take(text, ".,"))
        digits += takeDigits(text).size();
    if (digits == 0)
        return false;
    if (take(text, "eE")) {
        take(text, "+-");
        if (takeDigits(text).empty())
            return false;
    }
    return text.empty();
}

bool couldRunAsFormula(std::string_view field) {
    return !field.empty() && std::string_view("=+-@\t\r").find(field.front()) != std::string_view::npos &&
           !isNumber(field);
}

} // namespace

char csvSeparator(std::string_view locale) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols symbols(icu::Locale::forLanguageTag(std::string(locale), status), status);
    const auto decimal = symbols.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol);
    return U_SUCCESS(status) && decimal == icu::UnicodeString(",") ? ';' : ',';
}

std::string csvField(std::string_view field, char separator) {
    std::string text(couldRunAsFormula(field) ? "'" : "");
    text += field;
    if (text.find_first_of(std::string("\"\r\n") + separator) == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

std::string csvLine(const std::vector<std::string>& fields, char separator) {
    std::string line;
    for (const auto& field : fields) {
        if (&field != &fields.front())
            line += separator;
        line += csvField(field, separator);
    }
    return line;
}

std::string csv(const std::vector<std::string>& header, const std::vector<std::vector<std::string>>& rows,
                char separator) {
    std::string text = csvLine(header, separator) + "\r\n";
    for (const auto& row : rows)
        text += csvLine(row, separator) + "\r\n";
    return text;
}

std::string timestamp(Date date, const LocalCalendar& calendar) {
    const WallTime wall = calendar.wallTime(date);
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", wall.year, wall.month, wall.day, wall.hour,
                       wall.minute, wall.second);
}

std::vector<RunDetail> detailColumns(const std::vector<RunRecord>& records,
                                     const std::set<RunDetail>& besides) {
    std::vector<RunDetail> columns;
    for (const RunDetail detail : allCases<RunDetail>())
        if (!besides.contains(detail) && std::ranges::any_of(records, [&](const RunRecord& record) {
                return record.detail(detail).has_value();
            }))
            columns.push_back(detail);
    return columns;
}

} // namespace vh

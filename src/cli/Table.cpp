#include "cli/Table.h"

#include <numeric>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace vh::cli {

namespace {

constexpr std::string_view gap = "  ";
constexpr std::string_view ellipsis = "…";
constexpr size_t narrowest = 12;

size_t widthOf(UChar32 character) {
    switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
        return 0;
    default:
        break;
    }
    const auto kind = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
    return kind == U_EA_WIDE || kind == U_EA_FULLWIDTH ? 2 : 1;
}

/// The place where `columns` columns of the text are used up.
size_t bytesOfColumns(std::string_view text, size_t columns) {
    size_t used = 0;
    int32_t at = 0;
    while (at < static_cast<int32_t>(text.size())) {
        int32_t next = at;
        UChar32 character;
        U8_NEXT_OR_FFFD(text.data(), next, static_cast<int32_t>(text.size()), character);
        used += widthOf(character);
        if (used > columns)
            break;
        at = next;
    }
    return static_cast<size_t>(at);
}

void appendCell(std::string& line, const std::string& cell, const Column& column, size_t width) {
    const size_t used = displayWidth(cell);
    const std::string padding(width > used ? width - used : 0, ' ');
    line += column.align == Align::right ? padding + cell : cell + padding;
}

} // namespace

size_t displayWidth(std::string_view text) {
    size_t width = 0;
    for (int32_t at = 0; at < static_cast<int32_t>(text.size());) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            ++at;
            ++width;
            continue;
        }
        UChar32 character;
        U8_NEXT_OR_FFFD(text.data(), at, static_cast<int32_t>(text.size()), character);
        width += widthOf(character);
    }
    return width;
}

std::string shorten(const std::string& text, size_t columns) {
    if (displayWidth(text) <= columns)
        return text;
    if (columns == 0)
        return {};
    const size_t head = (columns - 1) / 3;
    const size_t tail = columns - 1 - head;
    auto from = static_cast<int32_t>(bytesOfColumns(text, displayWidth(text) - tail));
    // A wide character across the cut goes too.
    while (displayWidth(std::string_view(text).substr(static_cast<size_t>(from))) > tail)
        U8_FWD_1(text.data(), from, static_cast<int32_t>(text.size()));
    return text.substr(0, bytesOfColumns(text, head)) + std::string(ellipsis) +
           text.substr(static_cast<size_t>(from));
}

void Table::add(std::vector<std::string> cells) {
    cells.resize(columns_.size());
    rows_.push_back(std::move(cells));
}

std::vector<size_t> Table::widths(size_t limit) const {
    std::vector<size_t> widths;
    for (size_t i = 0; i < columns_.size(); ++i) {
        size_t width = displayWidth(columns_[i].title);
        for (const auto& row : rows_)
            width = std::max(width, displayWidth(row[i]));
        widths.push_back(width);
    }
    const size_t gaps = gap.size() * (columns_.size() - 1);
    size_t total = std::accumulate(widths.begin(), widths.end(), gaps);
    for (size_t i = 0; i < columns_.size() && limit > 0 && total > limit; ++i) {
        if (!columns_[i].mayShrink || widths[i] <= narrowest)
            continue;
        const size_t shrunk = std::max(narrowest, widths[i] - std::min(widths[i], total - limit));
        total -= widths[i] - shrunk;
        widths[i] = shrunk;
    }
    return widths;
}

std::string Table::text(size_t width) const {
    const auto columnWidths = widths(width);
    std::string out;
    const auto appendLine = [&](auto cellOf) {
        std::string line;
        for (size_t i = 0; i < columns_.size(); ++i) {
            line += i > 0 ? gap : "";
            appendCell(line, shorten(cellOf(i), columnWidths[i]), columns_[i], columnWidths[i]);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out += line + '\n';
    };
    appendLine([&](size_t i) { return columns_[i].title; });
    for (const auto& row : rows_)
        appendLine([&](size_t i) { return row[i]; });
    return out;
}

} // namespace vh::cli

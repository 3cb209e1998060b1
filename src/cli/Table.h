#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vh::cli {

enum class Align { left, right };

struct Column {
    std::string title;
    Align align = Align::left;
    bool mayShrink = false; ///< gives way, cut in the middle, when the terminal is too narrow
};

/// Rows of text under titles, columns as wide as they need to be.
class Table {
public:
    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// One text a column; what is missing at the end stays empty.
    void add(std::vector<std::string> cells);
    bool isEmpty() const { return rows_.empty(); }

    /// Lines for a terminal of `width` columns; 0: as wide as it gets.
    std::string text(size_t width) const;

private:
    std::vector<size_t> widths(size_t limit) const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

/// Columns a text takes on a terminal: combining marks take none, East Asian characters two.
size_t displayWidth(std::string_view text);

/// The text cut in its middle so that it takes at most `columns` columns; its end says more than its start.
std::string shorten(const std::string& text, size_t columns);

} // namespace vh::cli

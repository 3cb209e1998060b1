#pragma once

#include "Core/JobControl.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace vh::cli {

/// Writes to standard output. Throws SystemError when it cannot (a full disk, a closed device).
void print(std::string_view text);
/// Flushes standard output; throws like print.
void flush();
/// One line on standard error, "varnholt: " in front.
void complain(std::string_view text);

/// Columns for a table on standard output; 0, without limit, when it goes elsewhere than to a terminal.
size_t outputWidth();

/// Asks on the terminal; only a yes in the user's language or English counts as one.
bool confirm(std::string_view question, std::string_view yesLetters);

/// A bar and its percentage, two spaces after it.
std::string progressBar(double fraction);

/// A bar on standard error while it is a terminal, gone when the object goes; otherwise nothing.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    /// For work that shows itself here; valid as long as the line.
    JobControl control(const CancelToken& cancel);
    /// May be called from any thread.
    void show(double fraction, std::string_view what);

private:
    const bool visible_;
};

} // namespace vh::cli

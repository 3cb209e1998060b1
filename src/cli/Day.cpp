#include "cli/Day.h"

#include "Core/Printable.h"
#include "cli/UsageError.h"

namespace vh::cli {

Date parseDay(const std::string& text, const LocalCalendar& calendar) {
    const auto noon = parseIso8601(text + "T12:00:00Z");
    if (!noon)
        throw UsageError(printable(text) + ": YYYY-MM-DD");
    const WallTime wall = calendar.wallTime(*noon);
    // Far from Greenwich, noon there is already the next day here.
    const Date start = calendar.startOfDay(*noon);
    return wall.day == std::stoi(text.substr(8, 2)) ? start : calendar.startOfDay(*noon, -1);
}

} // namespace vh::cli

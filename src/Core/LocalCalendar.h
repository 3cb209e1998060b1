#pragma once

#include "Core/Date.h"

#include <memory>
#include <string>
#include <string_view>

namespace vh {

/// A moment as a wall clock shows it.
struct WallTime {
    int year = 0;
    int month = 0; ///< 1 to 12
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    bool operator==(const WallTime&) const = default;
};

/// Gregorian days in one time zone, right across changes of the clock. Cheap to copy; any thread may call.
class LocalCalendar {
public:
    /// The system's time zone.
    LocalCalendar();
    /// A zone by its name, such as "Europe/Madrid". Throws std::invalid_argument for one that is not known.
    explicit LocalCalendar(std::string_view zone);

    WallTime wallTime(Date date) const;
    /// The first moment of the day of `date`, or of the day `days` later.
    Date startOfDay(Date date, int days = 0) const;
    /// The same time on the wall, `days` later.
    Date addDays(Date date, int days) const;
    /// When the wall shows that time on the day of `date`, or on the day `days` later. A time that the clock skips is
    /// as much later as the clock leaps, one that it shows twice the first.
    Date atTime(Date date, int days, std::chrono::minutes sinceMidnight) const;
    int weekday(Date date) const; ///< 1 is Sunday
    std::string zone() const;

private:
    struct Zone;
    std::shared_ptr<const Zone> zone_;
};

} // namespace vh

#include "Core/LocalCalendar.h"

#include <chrono>
#include <cmath>
#include <stdexcept>
#include <unicode/gregocal.h>
#include <unicode/timezone.h>

namespace vh {

using namespace std::chrono;

struct LocalCalendar::Zone {
    std::unique_ptr<icu::TimeZone> zone;

    /// The time on the wall as if it were UTC.
    Date wall(Date date) const {
        int32_t raw = 0;
        int32_t saving = 0;
        UErrorCode status = U_ZERO_ERROR;
        zone->getOffset(static_cast<UDate>(floor<milliseconds>(date).time_since_epoch().count()), false, raw,
                        saving, status);
        return date + milliseconds(raw + saving);
    }

    /// When the wall shows that time: the first of two, and by the clock of before if it leaps over that time.
    Date moment(Date wall) const {
        UErrorCode status = U_ZERO_ERROR;
        icu::GregorianCalendar calendar(*zone, status);
        calendar.setGregorianChange(-std::pow(2.0, 62), status); // Gregorian for ever back, as Date is
        calendar.setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
        calendar.setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
        const auto day = floor<days>(wall);
        const year_month_day date(day);
        const hh_mm_ss time(wall - day);
        calendar.set(int(date.year()), int(unsigned(date.month())) - 1, int(unsigned(date.day())),
                     int(time.hours().count()), int(time.minutes().count()), int(time.seconds().count()));
        calendar.set(UCAL_MILLISECOND, 0);
        const UDate found = calendar.getTime(status);
        if (U_FAILURE(status))
            throw std::runtime_error(u_errorName(status));
        return Date(milliseconds(static_cast<int64_t>(found))) + time.subseconds();
    }
};

LocalCalendar::LocalCalendar()
    : zone_(new Zone{std::unique_ptr<icu::TimeZone>(icu::TimeZone::createDefault())}) {}

LocalCalendar::LocalCalendar(std::string_view zone)
    : zone_(new Zone{std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone(
          icu::UnicodeString::fromUTF8({zone.data(), static_cast<int32_t>(zone.size())})))}) {
    if (*zone_->zone == icu::TimeZone::getUnknown())
        throw std::invalid_argument("Unknown time zone \"" + std::string(zone) + "\".");
}

WallTime LocalCalendar::wallTime(Date date) const {
    const Date wall = zone_->wall(date);
    const auto day = floor<days>(wall);
    const year_month_day calendar(day);
    const hh_mm_ss time(wall - day);
    return {int(calendar.year()),      int(unsigned(calendar.month())), int(unsigned(calendar.day())),
            int(time.hours().count()), int(time.minutes().count()),     int(time.seconds().count())};
}

Date LocalCalendar::startOfDay(Date date, int daysLater) const {
    return zone_->moment(floor<days>(zone_->wall(date)) + days(daysLater));
}

Date LocalCalendar::addDays(Date date, int daysLater) const {
    return zone_->moment(zone_->wall(date) + days(daysLater));
}

Date LocalCalendar::atTime(Date date, int daysLater, std::chrono::minutes sinceMidnight) const {
    return zone_->moment(floor<days>(zone_->wall(date)) + days(daysLater) + sinceMidnight);
}

int LocalCalendar::weekday(Date date) const {
    return int(std::chrono::weekday(floor<days>(zone_->wall(date))).c_encoding()) + 1;
}

std::string LocalCalendar::zone() const {
    icu::UnicodeString id;
    std::string name;
    zone_->zone->getID(id).toUTF8String(name);
    return name;
}

} // namespace vh

#include "Core/Date.h"

#include <charconv>
#include <fmt/format.h>

namespace vh {

using namespace std::chrono;

namespace {

/// Reads fixed-width numbers and literal characters from the front of a text; the first miss makes it fail for good.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    int number(size_t width) {
        int value = 0;
        if (rest_.size() < width || rest_.find_first_not_of("0123456789") < width)
            return fail();
        std::from_chars(rest_.data(), rest_.data() + width, value);
        rest_.remove_prefix(width);
        return value;
    }
    bool take(std::string_view anyOf) {
        if (rest_.empty() || anyOf.find(rest_.front()) == std::string_view::npos)
            return false;
        rest_.remove_prefix(1);
        return true;
    }
    void expect(std::string_view anyOf) {
        if (!take(anyOf))
            fail();
    }
    microseconds fraction() {
        int64_t value = 0;
        int digits = 0;
        for (; !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9'; rest_.remove_prefix(1))
            if (digits < 6)
                value = value * 10 + (rest_.front() - '0'), ++digits;
        if (digits == 0)
            fail();
        for (; digits < 6; ++digits)
            value *= 10;
        return microseconds(value);
    }
    char peek() const { return rest_.empty() ? '\0' : rest_.front(); }
    bool isWhole() const { return good_ && rest_.empty(); }

private:
    int fail() {
        good_ = false;
        rest_ = {};
        return 0;
    }
    std::string_view rest_;
    bool good_ = true;
};

/// The zone at the end: "Z" or "+02:00".
minutes readOffset(Reader& in) {
    if (in.take("Zz"))
        return minutes(0);
    const bool behind = in.peek() == '-';
    in.expect("+-");
    const int h = in.number(2);
    in.take(":");
    const minutes offset = hours(h) + minutes(in.number(2));
    return behind ? -offset : offset;
}

} // namespace

Date systemNow() {
    return time_point_cast<microseconds>(system_clock::now());
}

std::string iso8601(Date date) {
    const auto day = floor<days>(date);
    const year_month_day calendar(day);
    const hh_mm_ss time(floor<seconds>(date - day));
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", int(calendar.year()),
                       unsigned(calendar.month()), unsigned(calendar.day()), time.hours().count(),
                       time.minutes().count(), time.seconds().count());
}

std::optional<Date> parseIso8601(std::string_view text) {
    Reader in(text);
    const year y(in.number(4));
    in.expect("-");
    const month m(static_cast<unsigned>(in.number(2)));
    in.expect("-");
    const day d(static_cast<unsigned>(in.number(2)));
    in.expect("Tt ");
    const int hour = in.number(2);
    in.expect(":");
    const int minute = in.number(2);
    in.expect(":");
    const int second = in.number(2);
    const microseconds fraction = in.take(".,") ? in.fraction() : microseconds(0);
    const minutes offset = readOffset(in);
    const year_month_day calendar(y, m, d);
    if (!in.isWhole() || !calendar.ok() || hour > 23 || minute > 59 || second > 60)
        return std::nullopt;
    return sys_days(calendar) + hours(hour) + minutes(minute) + seconds(second) + fraction - offset;
}

} // namespace vh

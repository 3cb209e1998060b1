#include "Features/Schedules/view/NextRunText.h"

#include "Core/Texts.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"

namespace vh::app {

namespace {

constexpr std::chrono::minutes soon{60};
constexpr qint64 daysWithNames = 7;

QDate dayOf(const LocalCalendar& calendar, Date date) {
    const WallTime wall = calendar.wallTime(date);
    return QDate(wall.year, wall.month, wall.day);
}

QString capitalized(QString text) {
    return text.isEmpty() ? text : text.left(1).toUpper() + text.mid(1);
}

} // namespace

QString nextRunText(const Texts& texts, const LocalCalendar& calendar, Date now, Date next) {
    if (next <= now)
        return qtText(texts.text("schedules.next.now"));
    if (next - now < soon) {
        const auto minutes = std::chrono::ceil<std::chrono::minutes>(next - now).count();
        return qtText(texts.text("schedules.next.soon", {{"count", minutes}}));
    }
    const DayTexts days(texts, calendar, now);
    const QDate day = dayOf(calendar, next);
    const qint64 ahead = dayOf(calendar, now).daysTo(day);
    QString name;
    if (ahead == 0)
        name = days.day(next);
    else if (ahead == 1)
        name = qtText(texts.text("schedules.next.tomorrow"));
    else if (ahead < daysWithNames)
        name = capitalized(localeOf(texts.language()).standaloneDayName(day.dayOfWeek()));
    else
        name = days.brief(next);
    return qtText(texts.text("schedules.next.at",
                             {{"day", name.toStdString()}, {"time", days.clock(next).toStdString()}}));
}

} // namespace vh::app

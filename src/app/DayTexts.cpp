#include "app/DayTexts.h"

#include "app/AppTexts.h"

#include <QTime>

namespace vh::app {

QLocale localeOf(Language language) {
    switch (language) {
    case Language::es:
        return QLocale(QLocale::Spanish, QLocale::Spain);
    case Language::fr:
        return QLocale(QLocale::French, QLocale::France);
    case Language::en:
        break;
    }
    return QLocale(QLocale::English, QLocale::UnitedKingdom);
}

DayTexts::DayTexts(const Texts& texts, const LocalCalendar& calendar, Date now)
    : texts_(texts), calendar_(calendar), locale_(localeOf(texts.language())), today_(dateOf(now)) {}

QString DayTexts::day(Date date) const {
    const QDate day = dateOf(date);
    if (day == today_)
        return qtText(texts_.text("core.day.today"));
    if (day == today_.addDays(-1))
        return qtText(texts_.text("core.day.yesterday"));
    return locale_.toString(day, QLocale::LongFormat);
}

QString DayTexts::clock(Date date) const {
    const WallTime wall = calendar_.wallTime(date);
    return QTime(wall.hour, wall.minute).toString(QStringLiteral("HH:mm"));
}

QString DayTexts::brief(Date date) const {
    const QDate day = dateOf(date);
    if (day == today_)
        return clock(date);
    if (day == today_.addDays(-1))
        return qtText(texts_.text("core.day.yesterday"));
    return locale_.toString(day, day.year() == today_.year() ? QStringLiteral("d MMM")
                                                             : QStringLiteral("d MMM yyyy"));
}

QString DayTexts::full(Date date) const {
    return day(date) + QStringLiteral(", ") + clock(date);
}

QDate DayTexts::dateOf(Date date) const {
    const WallTime wall = calendar_.wallTime(date);
    return QDate(wall.year, wall.month, wall.day);
}

} // namespace vh::app

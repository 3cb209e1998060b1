#include "Features/Activity/view/ActivityFilter.h"

#include <QDate>
#include <QDateTime>
#include <QTimeZone>

namespace vh::app {

namespace {

/// Noon of an ISO date, so that no change of the clock moves it to another day.
std::optional<Date> dayOf(const QString& iso, const LocalCalendar& calendar) {
    const QDate day = QDate::fromString(iso.trimmed(), Qt::ISODate);
    if (!day.isValid())
        return std::nullopt;
    const QTimeZone zone(QByteArray::fromStdString(calendar.zone()));
    return Date(std::chrono::milliseconds(QDateTime(day, QTime(12, 0), zone).toMSecsSinceEpoch()));
}

Period periodOf(const ActivityFilter& filter, Date now, const LocalCalendar& calendar) {
    if (filter.period == u"today")
        return Today{};
    if (filter.period == u"yesterday")
        return Yesterday{};
    if (filter.period == u"range") {
        const auto from = dayOf(filter.from, calendar);
        const auto to = dayOf(filter.to, calendar);
        if (from || to)
            return DayRange{from.value_or(Date()), to.value_or(now)};
        return AnyTime{};
    }
    bool isNumber = false;
    const int days = filter.period.toInt(&isNumber);
    return isNumber ? Period(LastDays{days}) : Period(AnyTime{});
}

template <class E>
std::optional<E> caseOf(const QString& raw) {
    return fromRaw<E>(raw.toStdString());
}

std::optional<std::string> textOf(const QString& text) {
    return text.isEmpty() ? std::nullopt : std::optional(text.toStdString());
}

} // namespace

RunFilter ActivityFilter::runFilter(Date now, const LocalCalendar& calendar) const {
    return {.toolID = textOf(toolID),
            .period = periodOf(*this, now, calendar),
            .outcome = caseOf<Outcome>(outcome),
            .computer = textOf(computer),
            .trigger = caseOf<Trigger>(trigger),
            .text = text.trimmed().toStdString()};
}

} // namespace vh::app

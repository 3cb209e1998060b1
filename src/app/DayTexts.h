#pragma once

#include "Core/Date.h"
#include "Core/LocalCalendar.h"
#include "Core/Texts.h"

#include <QDate>
#include <QLocale>
#include <QString>

namespace vh::app {

/// The language's own way to write dates and numbers.
QLocale localeOf(Language language);

/// Moments for people, seen from `now`. Any thread may ask.
class DayTexts {
public:
    DayTexts(const Texts& texts, const LocalCalendar& calendar, Date now);

    /// "Today", "Yesterday", else the day in full.
    QString day(Date date) const;
    /// "09:12".
    QString clock(Date date) const;
    /// "09:12" for today, "Yesterday", else "12 Nov", with the year when it is another one.
    QString brief(Date date) const;
    /// Day and time.
    QString full(Date date) const;

private:
    QDate dateOf(Date date) const;

    const Texts texts_;
    const LocalCalendar calendar_;
    const QLocale locale_;
    const QDate today_;
};

} // namespace vh::app

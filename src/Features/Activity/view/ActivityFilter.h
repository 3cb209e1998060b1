#pragma once

#include "Core/RunFilter.h"

#include <QString>

namespace vh::app {

/// A run filter as the page's fields hold it; empty means any.
struct ActivityFilter {
    QString period = QStringLiteral("all"); ///< "today", "yesterday", "all", "range", or a number of days
    QString from;                           ///< ISO dates of a range; an empty one leaves that side open
    QString to;
    QString toolID;
    QString outcome;
    QString trigger;
    QString computer;
    QString text;

    bool operator==(const ActivityFilter&) const = default;

    RunFilter runFilter(Date now, const LocalCalendar& calendar) const;
};

} // namespace vh::app

#pragma once

#include "Core/Date.h"
#include "Core/LocalCalendar.h"

#include <QString>

namespace vh {
class Texts;
}

namespace vh::app {

/// When something will happen, seen from `now`: "In 12 min", "Today at 09:00", "Monday at 09:00", "3 Dec at 09:00".
QString nextRunText(const Texts& texts, const LocalCalendar& calendar, Date now, Date next);

} // namespace vh::app

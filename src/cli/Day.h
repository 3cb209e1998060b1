#pragma once

#include "Core/Date.h"
#include "Core/LocalCalendar.h"

#include <string>

namespace vh::cli {

/// A day of the calendar such as "2026-11-22", at its start. Throws UsageError.
Date parseDay(const std::string& text, const LocalCalendar& calendar);

} // namespace vh::cli

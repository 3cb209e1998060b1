#pragma once

#include "Core/LocalCalendar.h"
#include "Core/RunRecord.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// What separates fields for the spreadsheets of a locale such as "es-ES": a semicolon where the comma is taken by
/// decimals.
char csvSeparator(std::string_view locale);

/// One field, quoted where it must be. What a spreadsheet would run as a formula gets an apostrophe in front.
std::string csvField(std::string_view field, char separator);
/// One line without its end.
std::string csvLine(const std::vector<std::string>& fields, char separator);
/// Lines that end in CR LF (RFC 4180).
std::string csv(const std::vector<std::string>& header, const std::vector<std::vector<std::string>>& rows,
                char separator);

/// "2026-11-22 20:18:55" on the calendar's wall clock.
std::string timestamp(Date date, const LocalCalendar& calendar);

/// The details that any of the records has and that are not in `besides`, in the order of RunDetail.
std::vector<RunDetail> detailColumns(const std::vector<RunRecord>& records,
                                     const std::set<RunDetail>& besides);

} // namespace vh

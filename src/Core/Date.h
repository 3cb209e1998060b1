#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// A moment in UTC.
using Date = std::chrono::sys_time<std::chrono::microseconds>;
/// Seconds with a fraction: how long something took.
using Seconds = std::chrono::duration<double>;

/// Whoever asks the time is handed one of these, so that a test can turn it.
using Clock = std::function<Date()>;
Date systemNow();

/// "2026-11-22T20:18:55Z": UTC in whole seconds, fractions cut off (ISO 8601, RFC 3339).
std::string iso8601(Date date);
/// Reads RFC 3339: "Z" or an offset, with or without a fraction of a second. Nothing for what is no date.
std::optional<Date> parseIso8601(std::string_view text);

} // namespace vh

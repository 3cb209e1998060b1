#pragma once

#include "Core/Language.h"

#include <cstdint>
#include <string>

namespace vh {

/// A size for people, in decimal units: "0 bytes", "612 MB", "8.4 GB", in French "8,4 Go". At most three significant
/// figures: one decimal below 10 MB and below 100 of a larger unit, never ".0".
std::string sizeText(int64_t bytes, Language language);

/// The same with "/s".
std::string rateText(double bytesPerSecond, Language language);

/// "0.4 s", "42 s", "4 min", "1 h 12 min", "2 d 3 h": the two largest units, the second left out when it is zero.
/// Below zero or not a number counts as zero.
std::string durationText(double seconds, Language language);

} // namespace vh

#pragma once

#include "Core/ScanReport.h"
#include "Tools/SystemJunk/ItemSize.h"

#include <chrono>
#include <optional>

namespace vh::junk {

/// Within which what was read or written counts as in use.
constexpr std::chrono::minutes recentUse{10};

/// How an item stands that was measured at `now` (seconds since 1970). `sharedAge` is how long an entry of the root has
/// to lie untouched where the root is everybody's; nothing where it is the person's own.
Recency recencyOf(const ItemSize& item, std::optional<std::chrono::seconds> sharedAge, int64_t now);

} // namespace vh::junk

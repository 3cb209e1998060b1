#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/Uuid.h"

#include <optional>
#include <string>

namespace vh {
namespace sync {

/// A folder and the one that is to become like it.
struct SyncPair {
    Uuid id;
    std::string name;
    std::string source, destination; ///< empty until chosen
    bool deleteExtraneous = false;   ///< remove what the source does not have
    bool compareContents = false;    ///< decide by bytes where the dates differ
    bool watch = false;              ///< sync by itself on change
    std::optional<Date> lastSync;

    /// The name, or "Photos → Backup" after the folders when it has none and both are chosen.
    std::string title() const;
    bool operator==(const SyncPair&) const = default;
};

} // namespace sync

template <>
inline constexpr auto describe<sync::SyncPair> =
    record(field("id", &sync::SyncPair::id), field("name", &sync::SyncPair::name),
           field("source", &sync::SyncPair::source), field("destination", &sync::SyncPair::destination),
           field("deleteExtraneous", &sync::SyncPair::deleteExtraneous),
           field("compareContents", &sync::SyncPair::compareContents), field("watch", &sync::SyncPair::watch),
           field("lastSync", &sync::SyncPair::lastSync));

} // namespace vh

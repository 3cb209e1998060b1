#pragma once

#include "Core/Message.h"
#include "Core/RunRecord.h"
#include "Tools/FolderSync/SyncError.h"
#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/SyncPlan.h"
#include "Tools/FolderSync/WatchState.h"

#include <optional>
#include <string>
#include <string_view>

namespace vh {
class Texts;
}

/// What is said of a sync, for people and in its record.
namespace vh::sync {

inline constexpr const char* toolID = "sync";

/// What the record of a sync says before it ends.
RunDetails detailsOf(const SyncPair& pair);
/// What it says of what came of it; so many bytes were copied.
RunDetails detailsOf(const SyncResult& result, int64_t bytes);
/// "Not copied: 2 pipes, 1 socket."; empty when nothing was left out.
std::string leftOutText(const std::optional<SyncLeftOut>& leftOut, const Texts& texts);
/// A few sentences on what a sync did.
Messages summaryOf(const SyncResult& result);
Outcome outcomeOf(const SyncResult& result);
RunMetrics metricsOf(const SyncResult& result, int64_t bytes);

/// Why two folders cannot be compared.
Message messageOf(const SyncError& error);
std::string textOf(const SyncError& error, const Texts& texts);
/// Which of the texts of states says this one: "no-source".
std::string_view textName(WatchState::Kind kind);
/// What keeps a pair from being synced.
Message messageOf(const WatchState& blocker, const SyncPair& pair);
std::string textOf(const WatchState& blocker, const SyncPair& pair, const Texts& texts);

} // namespace vh::sync

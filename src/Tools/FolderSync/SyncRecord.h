#pragma once

#include "Core/RunFiles.h"
#include "Core/RunRecord.h"
#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/SyncPlan.h"

#include <string>
#include <vector>

namespace vh {
class Texts;
}

namespace vh::sync {

inline constexpr const char* toolID = "sync";

/// What the record of a sync says before it ends.
RunDetails detailsOf(const SyncPair& pair);
/// One sentence or two on what a sync did.
std::string summaryOf(const SyncResult& result, const Texts& texts);
Outcome outcomeOf(const SyncResult& result);
RunMetrics metricsOf(const SyncResult& result);

} // namespace vh::sync

#pragma once

#include "Core/CleanJob.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vh {

/// True when at least one row still lies in the Trash.
bool canUndo(std::span<const RunFileRow> rows);

struct UndoResult {
    RunRecord record; ///< of the undo; its summary is the message
    int64_t restoredCount = 0;
    int64_t restoredBytes = 0;
    std::vector<SkippedItem> skipped; ///< what was removed and could not be put back, and why
};

/// Puts back what a run moved to the Trash, as far as it still lies there, and never over anything. Asked again, it
/// puts back only what is left. Writes a record of its own and marks the rows of the run's list as restored. Throws
/// std::runtime_error when the log knows no such run.
UndoResult undoRun(const Uuid& runID, Trigger trigger, const RunStores& stores, const Texts& texts,
                   const JobControl& control);

} // namespace vh

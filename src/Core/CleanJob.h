#pragma once

#include "Core/CleanState.h"
#include "Core/JobControl.h"
#include "Core/RunFiles.h"
#include "Core/RunRecord.h"
#include "Core/ScanReport.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh {

class RunJournal;
class RunJournals;
class RunLog;
class SuiteModule;
class Texts;

/// An item that a clean or an undo left alone.
struct SkippedItem {
    std::string path;
    std::string reason; ///< plain (Core/CleanReason.h) for a clean, for people in an undo
};

/// What a job leaves in the log, and where.
struct RunStores {
    RunLog& log;
    RunFiles& files;
    RunJournals& journals;
};

/// What a clean did, as its record says it and in the detail that a person sees at once.
struct CleanJobResult {
    RunRecord record; ///< its summary is the message
    CleanResult result;
    std::vector<SkippedItem> skipped;
    std::vector<std::string> skippedDetails; ///< one line an item, for people
    std::set<std::string> protectedPaths;    ///< normalised; protected or in use
    std::optional<std::string> error;        ///< why the whole clean failed
    std::string trackingFailure;             ///< why the list of what was done could not be kept; else empty
};

/// What starts a clean.
struct CleanStart {
    CleanStart(Trigger what) : trigger(what) {}
    Trigger trigger;
    RunDetails details;
    /// Nobody chose the items: the summary says it so, and items that had to stay are no more than a warning.
    bool isUnattended = false;
    /// Of the run that this is a part of, which stands for it in the log and lists its items.
    RunJournal* within = nullptr;
};

/// The one road from a selection to a run record. Removes the selected items of `report`, the module's last scan, one
/// by one, each written down before it goes, so that a kill at any moment leaves a record. Never throws for what fails
/// in the clean: that is the record's outcome. Stopped, it leaves a record of what was done.
CleanJobResult runClean(SuiteModule& module, const ScanReport& report, const CleanSelection& selection,
                        const CleanStart& start, const RunStores& stores, const Texts& texts,
                        const JobControl& control);

} // namespace vh

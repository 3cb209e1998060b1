#pragma once

#include "Core/Message.h"
#include "Core/RunFiles.h"
#include "Core/RunRecord.h"
#include "Tools/FastCopy/CopyManifest.h"
#include "Tools/FastCopy/CopyReport.h"

#include <optional>
#include <string>
#include <vector>

namespace vh {
class RunJournal;
class Texts;
} // namespace vh

namespace vh::copy {

inline constexpr const char* toolID = "fast-copy";

/// What the record of a copy says before it ends.
RunDetails detailsOf(const std::vector<std::string>& sources, const std::vector<std::string>& destinations);

/// One sentence or two on what a copy did, or a check against a manifest found.
Messages summaryOf(const CopyReport& report);
Messages summaryOf(const ManifestCheck& check);

/// The lists of checksums of a copy.
struct CopyLists {
    std::optional<ManifestKind> asked;
    std::vector<std::string> written; ///< paths
};

/// Finishes the run with what was done.
RunRecord finishRun(RunJournal& run, const CopyReport& report, const CopyLists& lists, const Texts& texts);
RunRecord finishRun(RunJournal& run, const ManifestCheck& check, const Texts& texts);

/// The list of a copy's files: from where, and where each lies now.
std::vector<RunFileRow> rowsOf(const CopyReport& report, const std::vector<std::string>& sources);

} // namespace vh::copy

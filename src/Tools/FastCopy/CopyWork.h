#pragma once

#include "Core/CleanJob.h"
#include "Core/RunRecord.h"
#include "Platform/CancelToken.h"
#include "Platform/Folders.h"
#include "Tools/FastCopy/CopyControl.h"
#include "Tools/FastCopy/CopyManifest.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/CopyProgress.h"
#include "Tools/FastCopy/CopyReport.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh {
class Texts;
} // namespace vh

namespace vh::copy {

/// What is to be copied where.
struct CopyRequest {
    std::vector<std::string> sources, destinations; ///< absolute
    CopyOptions options;
    std::optional<ManifestKind> manifest; ///< asks for verification too
    Trigger trigger = Trigger::manual;
    RunDetails details = {}; ///< of the record, besides those of the copy
};

struct CopyResult {
    RunRecord record;
    CopyReport report;
    std::string error;                  ///< why it could not begin; empty when it did
    bool isDestinationMissing = false;  ///< that is why
    std::vector<std::string> manifests; ///< that were written
    std::string trackingFailure;        ///< why the list of files could not be kept; else empty
};

/// "<data>/Varnholt/FastCopy", for `stateFolder`.
inline std::string copyStateFolder(const Folders& folders) {
    return folders.data + "/Varnholt/FastCopy";
}

/// The one road from a request to its run record with its file list: copies, verifies, takes up what an interrupted
/// verified copy of the same sources and destinations had proven, writes manifests. Never throws. Blocks; any thread.
/// `stateFolder` holds the notes for taking up. `cancel` stops it as `control` does.
CopyResult runCopy(const CopyRequest& request, const std::string& stateFolder, const RunStores& runs,
                   const Texts& texts, const std::shared_ptr<CopyControl>& control,
                   const std::function<void(const CopyProgress&)>& progress = {},
                   const CancelToken& cancel = {});

struct CheckResult {
    RunRecord record;
    ManifestCheck check;
    std::string error; ///< why it could not begin; empty when it did
};

/// Checks a copy against the manifest at `path`, absolute, and leaves a run record. Never throws. Blocks; any thread.
CheckResult runManifestCheck(const std::string& path, Trigger trigger, const RunStores& runs,
                             const Texts& texts, const JobControl& control);

} // namespace vh::copy

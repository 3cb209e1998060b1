#include "Tools/FastCopy/CopyWork.h"

#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/RunLog.h"
#include "Core/ToolTexts.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/CopyError.h"
#include "Tools/FastCopy/CopyProofs.h"
#include "Tools/FastCopy/CopyRecord.h"
#include "Tools/FastCopy/FastCopier.h"

namespace vh::copy {

namespace {

std::unique_ptr<RunJournal> beginRun(const RunStores& runs, Trigger trigger, const RunDetails& details,
                                     const Texts& texts) {
    return runs.journals.open(runs.log.begin(toolID, trigger, details), toolName(texts, toolID));
}

RunRecord finishFailed(RunJournal& run, const Message& error, const Texts& texts) {
    return run.finish(Outcome::failed, RunWords({error}, texts), {{RunMetric::errors, 1}});
}

/// Over before anything was copied.
CopyReport emptyReport(const CopyRequest& request, const CopyOptions& options, CopyOutcome outcome) {
    CopyReport report;
    report.outcome = outcome;
    report.verifyRequested = options.verifies();
    report.algorithm = options.algorithm;
    for (const std::string& path : request.destinations) {
        report.destinations.emplace_back();
        report.destinations.back().path = path;
    }
    return report;
}

/// What keeps a manifest from being written, or a file from being in it, is a problem of that destination.
std::vector<std::string> writeManifests(CopyReport& report, ManifestKind kind, Date now) {
    std::vector<std::string> paths;
    for (size_t each = 0; each < report.destinations.size(); ++each) {
        DestinationReport& destination = report.destinations[each];
        if (destination.removed)
            continue;
        try {
            WrittenManifest written = writeManifest(report, each, kind, now);
            if (!written.path.empty())
                paths.push_back(std::move(written.path));
            std::ranges::move(written.leftOut, std::back_inserter(destination.faults));
        } catch (const std::exception& error) { // whatever it is, what was copied stays told
            destination.faults.push_back({"fast-copy.problem.no-manifest", {{"reason", messageOf(error)}}});
        }
    }
    report.outcome = outcomeOf(report, false);
    return paths;
}

void saveRows(CopyResult& result, const CopyRequest& request, const RunStores& runs) {
    try {
        if (!result.report.files.empty())
            runs.files.save(result.record.id, rowsOf(result.report, request.sources));
    } catch (const SystemError& error) {
        result.trackingFailure = error.what();
    }
}

} // namespace

CopyResult runCopy(const CopyRequest& request, const std::string& stateFolder, const RunStores& runs,
                   const Texts& texts, const std::shared_ptr<CopyControl>& control,
                   const std::function<void(const CopyProgress&)>& progress, const CancelToken& cancel) {
    RunDetails details = detailsOf(request.sources, request.destinations);
    details.insert(request.details.begin(), request.details.end());
    const auto run = beginRun(runs, request.trigger, details, texts);
    control->follow(cancel);
    CopyOptions options = request.options;
    options.verify = options.verify || request.manifest.has_value();
    CopyResult result;
    try {
        std::optional<CopyProofs> proofs;
        if (options.verifies())
            proofs.emplace(stateFolder, request.sources, request.destinations, options.algorithm);
        result.report = FastCopier(control).copy(request.sources, request.destinations, options, progress,
                                                 cancel, proofs ? &*proofs : nullptr);
        if (request.manifest && result.report.outcome != CopyOutcome::stopped)
            result.manifests = writeManifests(result.report, *request.manifest, runs.log.now());
    } catch (const Cancelled&) {
        result.report = emptyReport(request, options, CopyOutcome::stopped);
    } catch (const std::exception& error) {
        result.report = emptyReport(request, options, CopyOutcome::failed);
        result.record = finishFailed(*run, messageOf(error), texts);
        result.error = result.record.summary;
        const auto* why = dynamic_cast<const CopyError*>(&error);
        result.isDestinationMissing = why && why->kind == CopyError::Kind::destinationMissing;
        return result;
    }
    result.report.word(texts);
    result.record = finishRun(*run, result.report, {request.manifest, result.manifests}, texts);
    result.trackingFailure = run->failure();
    saveRows(result, request, runs);
    return result;
}

CheckResult runManifestCheck(const std::string& path, Trigger trigger, const RunStores& runs,
                             const Texts& texts, const JobControl& control) {
    const auto run = beginRun(runs, trigger, {{RunDetail::source, path}}, texts);
    CheckResult result;
    try {
        result.check = checkManifest(path, control);
        result.check.unreadable = linesOf(result.check.faults, texts);
        result.record = finishRun(*run, result.check, texts);
    } catch (const ManifestError& error) {
        result.record = finishFailed(
            *run, {"error.at-path", {{"path", printable(path)}, {"reason", messageOf(error)}}}, texts);
        result.error = result.record.summary;
    } catch (const std::exception& error) {
        result.record = finishFailed(*run, messageOf(error), texts);
        result.error = result.record.summary;
    }
    return result;
}

} // namespace vh::copy

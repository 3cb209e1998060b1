#include "Tools/FastCopy/CopyRecord.h"

#include "Core/Codec.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/Texts.h"

#include <filesystem>
#include <map>

namespace vh::copy {

namespace {

void addCount(Messages& said, const char* key, int64_t count) {
    if (count > 0)
        said.push_back({key, {{"count", count}}});
}

/// Of a copy that did not come to the same everywhere: what each place has of it.
void addPlaces(Messages& said, const CopyReport& report) {
    for (const DestinationReport& each : report.destinations)
        if (!each.removed)
            said.push_back(
                {"fast-copy.summary.place",
                 {{"place", printable(each.path)}, {"whole", each.whole()}, {"files", report.filesPlanned}}});
}

/// What a person might take the lists for and they are not.
void addNotes(Messages& said, const CopyLists& lists, const CopyReport& report) {
    if (!lists.asked || report.outcome == CopyOutcome::stopped)
        return;
    if (report.totalSkipped() > 0)
        said.push_back({"fast-copy.manifest.unlisted", {}});
    if (!lists.written.empty() && *lists.asked == ManifestKind::mhl &&
        report.algorithm == HashAlgorithm::sha256)
        said.push_back({"fast-copy.manifest.beyond-mhl", {}});
}

Outcome runOutcomeOf(CopyOutcome outcome) {
    switch (outcome) {
    case CopyOutcome::completed:
        return Outcome::success;
    case CopyOutcome::completedWithProblems:
        return Outcome::warning;
    case CopyOutcome::stopped:
        return Outcome::cancelled;
    default:
        return Outcome::failed;
    }
}

} // namespace

RunDetails detailsOf(const std::vector<std::string>& sources, const std::vector<std::string>& destinations) {
    return {{RunDetail::source, joinList(sources)}, {RunDetail::destinations, joinList(destinations)}};
}

Messages summaryOf(const CopyReport& report) {
    size_t places = 0;
    size_t reached = 0; // that took something
    for (const DestinationReport& each : report.destinations) {
        places += each.removed ? 0 : 1;
        reached += !each.removed && each.written() > 0 ? 1 : 0;
    }
    Messages said{{"fast-copy.summary.copied",
                   {{"files", report.totalWritten()},
                    {"places", reached},
                    {"bytes", ByteCount{report.bytesWritten()}}}}};
    addCount(said, "fast-copy.summary.verified", report.totalVerified());
    addCount(said, "fast-copy.summary.skipped", report.totalSkipped());
    addCount(said, "fast-copy.summary.mismatched", report.totalMismatched());
    addCount(said, "fast-copy.summary.failed", report.totalFailed());
    if (places > 1 && report.hasProblems())
        addPlaces(said, report);
    addCount(said, "fast-copy.summary.left-out.links", report.leftOut.links);
    addCount(said, "fast-copy.summary.left-out.sockets", report.leftOut.sockets);
    addCount(said, "fast-copy.summary.left-out.others", report.leftOut.others);
    if (report.outcome == CopyOutcome::stopped)
        said.push_back({"fast-copy.summary.stopped", {}});
    return said;
}

Messages summaryOf(const ManifestCheck& check) {
    Messages said{{"fast-copy.manifest.matching",
                   {{"count", check.matching}, {"files", check.files}, {"bytes", ByteCount{check.bytes}}}}};
    addCount(said, "fast-copy.manifest.differing", static_cast<int64_t>(check.differing.size()));
    addCount(said, "fast-copy.manifest.missing", static_cast<int64_t>(check.missing.size()));
    addCount(said, "fast-copy.manifest.unreadable", static_cast<int64_t>(check.faults.size()));
    if (check.stopped)
        said.push_back({"fast-copy.manifest.stopped", {}});
    return said;
}

RunRecord finishRun(RunJournal& run, const CopyReport& report, const CopyLists& lists, const Texts& texts) {
    Messages summary = summaryOf(report);
    addNotes(summary, lists, report);
    Messages problems = report.problems();
    const auto problemCount = static_cast<double>(problems.size());
    const RunDetails details{
        {RunDetail::files, std::to_string(report.totalWritten())},
        {RunDetail::bytes, std::to_string(report.bytesWritten())},
        {RunDetail::verified, std::to_string(report.totalVerified())},
        {RunDetail::failed, std::to_string(report.totalFailed() + report.totalMismatched())},
        {RunDetail::output, joinList(lists.written)}};
    return run.finish(runOutcomeOf(report.outcome),
                      RunWords(summary, texts, firstProblems(std::move(problems))),
                      {{RunMetric::filesCopied, static_cast<double>(report.totalWritten())},
                       {RunMetric::bytesCopied, static_cast<double>(report.bytesWritten())},
                       {RunMetric::errors, problemCount}},
                      details);
}

RunRecord finishRun(RunJournal& run, const ManifestCheck& check, const Texts& texts) {
    Messages bad = check.problems();
    const size_t badCount = bad.size();
    const Outcome outcome = check.stopped   ? Outcome::cancelled
                            : badCount == 0 ? Outcome::success
                                            : Outcome::failed;
    return run.finish(outcome, RunWords(summaryOf(check), texts, firstProblems(std::move(bad))),
                      {{RunMetric::itemsProcessed, static_cast<double>(check.files)},
                       {RunMetric::errors, static_cast<double>(badCount)}},
                      {{RunDetail::files, std::to_string(check.files)},
                       {RunDetail::bytes, std::to_string(check.bytes)},
                       {RunDetail::verified, std::to_string(check.matching)},
                       {RunDetail::failed, std::to_string(badCount)}});
}

std::vector<RunFileRow> rowsOf(const CopyReport& report, const std::vector<std::string>& sources) {
    // Of two sources with one name nothing tells which a file was of.
    std::map<std::string, std::string, std::less<>> folderOf;
    for (const std::string& source : sources) {
        const std::filesystem::path path(source);
        const auto [found, isNew] =
            folderOf.emplace(path.filename().string(), path.parent_path().string() + "/");
        if (!isNew)
            found->second.clear();
    }
    std::vector<RunFileRow> rows;
    rows.reserve(report.files.size());
    for (const CopiedFile& file : report.files) {
        const auto folder = folderOf.find(std::string_view(file.relative).substr(0, file.relative.find('/')));
        RunFileRow row{.path = (folder == folderOf.end() ? "" : folder->second) + file.relative,
                       .place = {},
                       .bytes = file.bytes,
                       .state = std::string(rawValue(file.state)),
                       .checksum = file.checksum};
        if (file.state != CopiedFileState::failed)
            row.place = file.destination + '/' + file.place();
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace vh::copy

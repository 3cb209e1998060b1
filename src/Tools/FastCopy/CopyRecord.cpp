#include "Tools/FastCopy/CopyRecord.h"

#include "Core/ByteFormat.h"
#include "Core/RunHandle.h"
#include "Core/Texts.h"

namespace vh::copy {

namespace {

constexpr size_t mostProblemsTold = 20;

std::string lines(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& each : texts)
        all += (all.empty() ? "" : "\n") + each;
    return all;
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
    return {{RunDetail::source, lines(sources)}, {RunDetail::destinations, lines(destinations)}};
}

std::string summaryOf(const CopyReport& report, const Texts& texts) {
    size_t places = 0;
    for (const DestinationReport& each : report.destinations)
        places += each.removed ? 0 : 1;
    std::string text = texts.text("fast-copy.summary.copied",
                                  {{"files", report.totalWritten()},
                                   {"places", places},
                                   {"bytes", sizeText(report.bytesWritten(), texts.language())}});
    const auto add = [&](const char* key, int64_t count) {
        if (count > 0)
            text += " " + texts.text(key, {{"count", count}});
    };
    add("fast-copy.summary.verified", report.totalVerified());
    add("fast-copy.summary.skipped", report.totalSkipped());
    add("fast-copy.summary.mismatched", report.totalMismatched());
    add("fast-copy.summary.failed", report.totalFailed());
    if (report.outcome == CopyOutcome::stopped)
        text += " " + texts.text("fast-copy.summary.stopped");
    return text;
}

RunRecord finishRun(RunHandle& run, const CopyReport& report, const Texts& texts) {
    std::vector<std::string> problems = report.problems();
    RunDetails details{{RunDetail::files, std::to_string(report.totalWritten())},
                       {RunDetail::bytes, std::to_string(report.bytesWritten())},
                       {RunDetail::verified, std::to_string(report.totalVerified())},
                       {RunDetail::failed, std::to_string(report.totalFailed() + report.totalMismatched())}};
    const auto count = static_cast<double>(problems.size());
    problems.resize(std::min(problems.size(), mostProblemsTold));
    details.emplace(RunDetail::errors, lines(problems));
    return run.finish(runOutcomeOf(report.outcome), summaryOf(report, texts),
                      {{RunMetric::filesCopied, static_cast<double>(report.totalWritten())},
                       {RunMetric::bytesCopied, static_cast<double>(report.bytesWritten())},
                       {RunMetric::errors, count}},
                      details);
}

} // namespace vh::copy

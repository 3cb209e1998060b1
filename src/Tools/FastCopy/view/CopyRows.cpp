#include "Tools/FastCopy/view/CopyRows.h"

#include "Core/ByteFormat.h"
#include "Core/Printable.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace vh::app {

namespace {

using copy::CopyJob;

std::string_view nameOf(CopyJob::State state) {
    switch (state) {
    case CopyJob::State::queued:
        return "queued";
    case CopyJob::State::running:
        return "running";
    case CopyJob::State::verifying:
        return "verifying";
    case CopyJob::State::finished:
        return "finished";
    case CopyJob::State::stopped:
        return "stopped";
    default:
        return "failed";
    }
}

int64_t doneAt(const CopyJob& job, size_t index) {
    return index < job.done.size() ? job.done[index] : 0;
}

/// It would run, but all of its places are paused.
bool rests(const CopyJob& job) {
    const auto visible = job.visibleIndices();
    return job.state == CopyJob::State::running && !visible.empty() &&
           std::ranges::all_of(visible, [&](size_t each) { return job.paused.contains(each); });
}

QString joined(std::initializer_list<QString> parts) {
    QStringList list(parts);
    list.removeAll(QString());
    return list.join(QStringLiteral(" · "));
}

} // namespace

std::span<const RecordListModel<CopyJobRow>::Role> CopyJobRow::roles() {
    using Model = RecordListModel<CopyJobRow>;
    static constexpr Model::Role table[] = {
        Model::role<&CopyJobRow::id>("jobId"),
        Model::role<&CopyJobRow::title>("title"),
        Model::role<&CopyJobRow::from>("from"),
        Model::role<&CopyJobRow::detail>("detail"),
        Model::role<&CopyJobRow::icon>("icon"),
        Model::role<&CopyJobRow::state>("jobState"),
        Model::role<&CopyJobRow::stateTitle>("stateTitle"),
        Model::role<&CopyJobRow::outcome>("outcome"),
        Model::role<&CopyJobRow::isActive>("isActive"),
        Model::role<&CopyJobRow::isOver>("isOver"),
        Model::role<&CopyJobRow::isStopping>("isStopping"),
        Model::role<&CopyJobRow::rateText>("rateText"),
        Model::role<&CopyJobRow::leftText>("leftText"),
        Model::role<&CopyJobRow::currentFile>("currentFile"),
        Model::role<&CopyJobRow::line>("line"),
        Model::role<&CopyJobRow::lanes>("lanes"),
    };
    return table;
}

QString CopyWords::text(std::string_view key, const std::vector<TextArgument>& arguments) const {
    return context_.texts().text(key, arguments);
}

QString CopyWords::placeName(const std::string& path) const {
    const QString name = displayName(path);
    return name.isEmpty() ? qtText(printable(path)) : name;
}

QString CopyWords::placePath(const std::string& path) const {
    return displayPath(path, context_.session().folders().home);
}

QString CopyWords::sourceName(const copy::CopySource& source) const {
    if (const auto* path = std::get_if<std::string>(&source))
        return placeName(*path);
    return qtText(printable(std::get<copy::RescueDisk>(source).name));
}

QString CopyWords::namesOf(const CopyJob& job) const {
    const QString first = job.sources.empty() ? QString() : sourceName(job.sources.front());
    if (job.sources.size() < 2)
        return first;
    return text("copy-page.job.more", {{"name", first.toStdString()}, {"count", job.sources.size() - 1}});
}

QString CopyWords::jobTitle(const CopyJob& job) const {
    const auto visible = job.visibleIndices();
    const std::string names = namesOf(job).toStdString();
    if (visible.size() == 1)
        return text(
            "copy-page.job.one-place",
            {{"names", names}, {"place", placeName(job.destinations[visible.front()]).toStdString()}});
    return text("copy-page.job.places", {{"names", names}, {"count", visible.size()}});
}

QString CopyWords::amount(std::optional<int64_t> files, int64_t bytes) const {
    const QString size = context_.texts().sizeText(bytes);
    return files ? joined({text("copy-page.files", {{"count", *files}}), size}) : size;
}

QString CopyWords::detail(const CopyJob& job) const {
    const QString how = job.disk()                                  ? text("copy-page.job.image")
                        : job.options.mode == copy::CopyMode::clone ? text("copy-page.job.clone")
                        : job.options.verifies() || job.manifest    ? text("copy-page.job.verified")
                                                                    : QString();
    if (!job.bytes)
        return joined({job.isOver() ? QString() : text("copy-page.measuring"), how});
    return joined({amount(job.disk() ? std::nullopt : job.fileCount, *job.bytes), how});
}

QString CopyWords::stateTitle(const CopyJob& job) const {
    if (job.stopping)
        return text("copy-page.state.stopping");
    if (rests(job))
        return text("copy-page.state.paused");
    if (job.state == CopyJob::State::finished && !job.endedWell)
        return text("copy-page.state.problems");
    return text(fmt::format("copy-page.state.{}", nameOf(job.state)));
}

QString CopyWords::outcomeOf(const CopyJob& job) const {
    switch (job.state) {
    case CopyJob::State::finished:
        return job.endedWell ? QStringLiteral("success") : QStringLiteral("warning");
    case CopyJob::State::failed:
        return QStringLiteral("failed");
    case CopyJob::State::stopped:
        return QStringLiteral("cancelled");
    default:
        return {};
    }
}

QString CopyWords::laneState(const CopyJob& job, size_t index) const {
    if (job.isOver()) {
        if (job.report && index < job.report->destinations.size() &&
            job.report->destinations[index].hasProblems())
            return QStringLiteral("faulty");
        return job.state == CopyJob::State::finished ? QStringLiteral("good") : QStringLiteral("ended");
    }
    if (job.paused.contains(index))
        return QStringLiteral("paused");
    if (job.state == CopyJob::State::queued)
        return QStringLiteral("waits");
    if (job.state == CopyJob::State::verifying)
        return QStringLiteral("verifies");
    return job.bytes && *job.bytes > 0 && doneAt(job, index) >= *job.bytes ? QStringLiteral("full")
                                                                           : QStringLiteral("runs");
}

QString CopyWords::laneText(const CopyJob& job, size_t index, const QString& state) const {
    const auto size = [&](int64_t bytes) {
        return context_.texts().sizeText(bytes).toStdString();
    };
    if (job.isOver()) {
        if (!job.report || index >= job.report->destinations.size())
            return {};
        const copy::DestinationReport& report = job.report->destinations[index];
        return amount(report.written(), report.bytes);
    }
    if (state == u"verifies" || !job.bytes)
        return {};
    if (state == u"waits")
        return qtText(size(*job.bytes));
    return text("copy-page.lane.of",
                {{"done", size(std::min(doneAt(job, index), *job.bytes))}, {"all", size(*job.bytes)}});
}

QVariantMap CopyWords::lane(const CopyJob& job, size_t index) const {
    const QString state = laneState(job, index);
    double fraction = job.bytes && *job.bytes > 0 ? double(doneAt(job, index)) / double(*job.bytes) : 0;
    if (state == u"verifies")
        fraction = job.verified;
    if (job.state == CopyJob::State::finished)
        fraction = 1;
    return {{QStringLiteral("index"), int(index)},
            {QStringLiteral("name"), placeName(job.destinations[index])},
            {QStringLiteral("path"), placePath(job.destinations[index])},
            {QStringLiteral("state"), state},
            {QStringLiteral("stateTitle"), text(fmt::format("copy-page.lane.{}", state.toStdString()))},
            {QStringLiteral("fraction"), std::clamp(fraction, 0.0, 1.0)},
            {QStringLiteral("text"), laneText(job, index, state)}};
}

CopyJobRow CopyWords::row(const CopyJob& job) const {
    CopyJobRow row;
    row.id = qtText(job.id.text());
    row.title = jobTitle(job);
    row.from = namesOf(job);
    row.detail = detail(job);
    row.icon = job.disk() ? QStringLiteral("externaldrive") : QStringLiteral("arrow.triangle.branch");
    row.state = qtText(nameOf(job.state));
    row.stateTitle = stateTitle(job);
    row.outcome = outcomeOf(job);
    row.isActive = job.isActive();
    row.isOver = job.isOver();
    row.isStopping = job.stopping;
    const bool flows = job.isActive() && !rests(job);
    if (flows && job.rate > 0)
        row.rateText = qtText(rateText(job.rate, context_.texts().language()));
    if (flows && job.secondsRemaining)
        row.leftText =
            text("copy-page.left",
                 {{"time", durationText(std::ceil(*job.secondsRemaining), context_.texts().language())}});
    row.currentFile = qtText(printable(job.currentFile));
    row.line = job.isOver() ? endLine(job) : QString();
    for (const size_t each : job.visibleIndices())
        row.lanes << lane(job, each);
    return row;
}

QString CopyWords::headline(const CopyJob& job) const {
    if (job.state == CopyJob::State::failed)
        return text("fast-copy.headline-failed");
    if (job.state == CopyJob::State::finished && !job.endedWell && !job.disk())
        return text("fast-copy.headline-problems");
    return {};
}

QString CopyWords::endLine(const CopyJob& job) const {
    return qtText(printable(job.error.empty() ? job.summary : job.error));
}

QString CopyWords::toast(const CopyJob& job) const {
    if (job.state == CopyJob::State::failed)
        return text("fast-copy.headline-failed");
    if (job.disk())
        return endLine(job);
    if (!job.endedWell || !job.report)
        return text("fast-copy.toast-problems");
    const copy::CopyReport& report = *job.report;
    const std::string size = context_.texts().sizeText(report.bytesWritten()).toStdString();
    const auto visible = job.visibleIndices();
    const QString detail =
        visible.size() == 1
            ? text("fast-copy.toast-detail-one",
                   {{"files", report.totalWritten()},
                    {"size", size},
                    {"place", placeName(job.destinations[visible.front()]).toStdString()}})
            : text("fast-copy.toast-detail",
                   {{"files", report.totalWritten()}, {"size", size}, {"places", visible.size()}});
    QString all = text(job.options.mode == copy::CopyMode::clone ? "fast-copy.toast-clone-done"
                                                                 : "fast-copy.toast-copy-done") +
                  u' ' + detail;
    if (report.totalVerified() > 0)
        all += u' ' + text("fast-copy.toast-verified");
    return all;
}

} // namespace vh::app

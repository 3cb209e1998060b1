#include "app/ActivityCenter.h"

#include "Core/Uuid.h"

#include <algorithm>
#include <cmath>

namespace vh::app {

namespace {

std::optional<double> withinBounds(std::optional<double> progress) {
    if (!progress || std::isnan(*progress))
        return std::nullopt;
    return std::clamp(*progress, 0.0, 1.0);
}

} // namespace

ActivityCenter::ActivityCenter(Clock clock) : clock_(std::move(clock)), dispatcher_(this) {}

QString ActivityCenter::begin(const QString& title, const QString& tool, AtClosing atClosing) {
    QString key = QString::fromStdString(Uuid::random().text());
    report({.key = key, .title = title, .toolID = tool, .atClosing = atClosing});
    return key;
}

JobToken ActivityCenter::beginToken(const QString& title, const QString& tool, AtClosing atClosing) {
    const QString key = begin(title, tool, atClosing);
    return JobToken(key, [this, key, post = dispatcher_.post()] { post([this, key] { end(key); }); });
}

void ActivityCenter::report(const ActivityReport& report) {
    if (!report.active)
        return end(report.key);
    Job* job = find(report.key);
    if (!job)
        job = &jobs_.emplace_back(Job{.id = report.key, .startedAt = clock_()});
    job->title = report.title;
    job->toolID = report.toolID;
    job->progress = withinBounds(report.progress);
    job->atClosing = report.atClosing;
    emit changed();
}

void ActivityCenter::setProgress(const QString& key, std::optional<double> progress) {
    Job* job = find(key);
    if (!job)
        return;
    job->progress = withinBounds(progress);
    emit changed();
}

void ActivityCenter::end(const QString& key) {
    if (std::erase_if(jobs_, [&](const Job& job) { return job.id == key; }) > 0)
        emit changed();
}

QSet<QString> ActivityCenter::busyTools() const {
    QSet<QString> tools;
    for (const Job& job : jobs_)
        if (!job.toolID.isEmpty())
            tools.insert(job.toolID);
    return tools;
}

std::optional<double> ActivityCenter::overallProgress() const {
    double sum = 0;
    int known = 0;
    for (const Job& job : jobs_)
        if (job.progress) {
            sum += *job.progress;
            ++known;
        }
    return known > 0 ? std::optional(sum / known) : std::nullopt;
}

ActivityCenter::Job* ActivityCenter::find(const QString& key) {
    const auto found = std::ranges::find(jobs_, key, &Job::id);
    return found == jobs_.end() ? nullptr : &*found;
}

JobToken::JobToken(QString key, const std::function<void()>& end)
    : key_(std::move(key)), end_(nullptr, [end](void*) { end(); }) {}

} // namespace vh::app

#include "app/DatabaseCare.h"

#include "Core/DatabaseLocation.h"
#include "Core/RunFiles.h"
#include "Core/RunLog.h"
#include "Core/UserDefaults.h"
#include "app/AppTexts.h"

namespace vh::app {

namespace {

constexpr std::chrono::hours interval{6};

} // namespace

DatabaseCare::DatabaseCare(UserDefaults& defaults, RunLog& log, RunFiles& files, Clock clock)
    : defaults_(defaults), log_(log), files_(files), clock_(std::move(clock)) {
    timer_.setInterval(interval);
    connect(&timer_, &QTimer::timeout, this, &DatabaseCare::prune);
}

void DatabaseCare::start() {
    prune();
    timer_.start();
}

void DatabaseCare::prune() {
    const Date now = clock_();
    pruning_.run([this, runs = cutoff(keepRuns(), now),
                  files = cutoff(keepFiles(), now)](const Background::Task&) { log_.prune(runs, files); },
                 [this](std::future<void>) { measure(); });
}

void DatabaseCare::measure() {
    measuring_.run([this](const Background::Task&) { return measured(); },
                   [this](std::future<DatabaseUsage> result) {
                       try {
                           usage_ = result.get();
                       } catch (const std::exception&) {
                           // A folder that cannot be used now is looked at again next time; the usage stays as known.
                           return;
                       }
                       emit changed();
                   });
}

void DatabaseCare::move(const std::string& folder) {
    if (isMoving())
        return;
    moving_.run(
        [this, folder](const Background::Task&) {
            log_.relocate(folder);
            return measured();
        },
        [this](std::future<DatabaseUsage> result) {
            try {
                usage_ = result.get();
                moveFailure_.clear();
            } catch (const std::exception& error) {
                moveFailure_ = qtText(error.what());
            }
            emit changed();
        });
}

Keep DatabaseCare::keepRuns() const {
    return defaults_.get<Keep>(keepRunsKey).value_or(Keep::always);
}

Keep DatabaseCare::keepFiles() const {
    return defaults_.get<Keep>(keepFilesKey).value_or(Keep::year);
}

void DatabaseCare::setKeepRuns(Keep keep) {
    defaults_.set(keepRunsKey, keep);
    emit changed();
}

void DatabaseCare::setKeepFiles(Keep keep) {
    defaults_.set(keepFilesKey, keep);
    emit changed();
}

std::string DatabaseCare::folder() const {
    return DatabaseLocation::folder(defaults_);
}

DatabaseUsage DatabaseCare::measured() const {
    const auto records = log_.all();
    const auto lists = files_.usage();
    DatabaseUsage usage{.runs = static_cast<int64_t>(records.size()),
                        .lists = static_cast<int64_t>(lists.lists),
                        .bytes = log_.bytes() + lists.bytes};
    for (const RunRecord& record : records)
        usage.oldest = std::min(usage.oldest.value_or(record.startedAt), record.startedAt);
    return usage;
}

} // namespace vh::app

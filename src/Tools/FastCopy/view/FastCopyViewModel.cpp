#include "Tools/FastCopy/view/FastCopyViewModel.h"

#include "Core/Codec.h"
#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Platform/Files.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/FastCopier.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <algorithm>
#include <filesystem>
#include <ranges>
#include <utility>

namespace vh::app {

namespace {

constexpr std::string_view optionsKey = "fast-copy.options";
constexpr std::string_view togetherKey = "fast-copy.run-together";
constexpr std::string_view manifestKey = "fast-copy.manifest";
/// More lines than that nobody reads; the list of files has them all.
constexpr size_t mostProblems = 200;

std::string normal(const std::string& path) {
    std::string clean = std::filesystem::path(path).lexically_normal().string();
    if (clean.size() > 1 && clean.ends_with('/'))
        clean.pop_back();
    return clean;
}

template <class T>
void put(T& field, const QVariant& value) {
    if (const auto parsed = fromRaw<T>(value.toString().toStdString()))
        field = *parsed;
}

/// Which of two ends has more to say.
int weightOf(const copy::CopyJob& job) {
    return job.state == copy::CopyJob::State::failed ? 2 : job.endedWell ? 0 : 1;
}

} // namespace

FastCopyViewModel::FastCopyViewModel(AppContext& context, AutomationLife& life, CopyDependencies dependencies)
    : context_(context), life_(life), dependencies_(dependencies), rows_(CopyJobRow::roles()),
      files_(context), queue_(context, std::move(dependencies)) {
    openOptions();
    connect(&context_.texts(), &AppTexts::changed, this, &FastCopyViewModel::tellChosen);
    connect(&context_.texts(), &AppTexts::changed, this, &FastCopyViewModel::disksChanged);
    connect(&context_.texts(), &AppTexts::changed, this, &FastCopyViewModel::followQueue);
    connect(&places_, &CopyPlaces::changed, this, &FastCopyViewModel::tellChosen);
    connect(&queue_, &CopyQueue::changed, this, &FastCopyViewModel::followQueue);
    connect(&queue_, &CopyQueue::ended, this, &FastCopyViewModel::tellEnd);
}

FastCopyViewModel::~FastCopyViewModel() = default;

void FastCopyViewModel::openOptions() {
    const UserDefaults& defaults = context_.session().defaults();
    options_ = defaults.get<copy::CopyOptions>(optionsKey).value_or(copy::CopyOptions());
    manifest_ = defaults.get<copy::ManifestKind>(manifestKey);
    together_ = defaults.get<bool>(togetherKey).value_or(false);
    queue_.setRunTogether(together_);
}

void FastCopyViewModel::store() {
    UserDefaults& defaults = context_.session().defaults();
    try {
        defaults.set(optionsKey, options_);
        defaults.set(togetherKey, together_);
        if (manifest_)
            defaults.set(manifestKey, *manifest_);
        else
            defaults.remove(manifestKey);
    } catch (const SystemError& error) {
        emit said(context_.texts().errorText(error));
    }
    emit optionsChanged();
    tellChosen();
}

QVariantMap FastCopyViewModel::options() const {
    return {
        {QStringLiteral("mode"), qtText(rawValue(options_.mode))},
        {QStringLiteral("conflict"), qtText(rawValue(options_.conflict))},
        {QStringLiteral("verify"), options_.verifies() || manifest_},
        {QStringLiteral("algorithm"), qtText(rawValue(options_.algorithm))},
        {QStringLiteral("preserveMetadata"), options_.keepsMetadata()},
        {QStringLiteral("links"), options_.links == copy::CopyLinks::asLinks},
        {QStringLiteral("manifest"), manifest_ ? qtText(rawValue(*manifest_)) : QString()},
    };
}

void FastCopyViewModel::setOption(const QString& key, const QVariant& value) {
    if (key == u"mode")
        put(options_.mode, value);
    else if (key == u"conflict")
        put(options_.conflict, value);
    else if (key == u"algorithm")
        put(options_.algorithm, value);
    else if (key == u"manifest")
        manifest_ = fromRaw<copy::ManifestKind>(value.toString().toStdString());
    else if (key == u"verify")
        options_.verify = value.toBool();
    else if (key == u"preserveMetadata")
        options_.preserveMetadata = value.toBool();
    else if (key == u"links")
        options_.links = value.toBool() ? copy::CopyLinks::asLinks : copy::CopyLinks::leaveOut;
    store();
    if (key == u"links")
        measure();
}

void FastCopyViewModel::setRunTogether(bool together) {
    together_ = together;
    store();
    queue_.setRunTogether(together);
}

void FastCopyViewModel::addSources(const QStringList& paths) {
    const size_t before = sources_.size();
    for (const QString& each : paths) {
        const std::string path = normal(chosenPath(each, context_.session().folders().home));
        if (path.empty() || path == ".")
            continue;
        const auto known = sourcePaths();
        if (std::ranges::find(known, path) != known.end())
            emit said(context_.texts().text("copy-page.said.source-twice",
                                            {{"name", CopyWords(context_).placeName(path).toStdString()}}));
        else
            sources_.emplace_back(path);
    }
    if (sources_.size() == before)
        return;
    places_.look(sourcePaths());
    measure();
}

void FastCopyViewModel::addDestinations(const QStringList& paths) {
    for (const QString& each : paths) {
        const std::string path = normal(chosenPath(each, context_.session().folders().home));
        if (path.empty() || path == ".")
            continue;
        if (std::ranges::find(destinations_, path) != destinations_.end())
            emit said(context_.texts().text("copy-page.said.destination-twice",
                                            {{"name", CopyWords(context_).placeName(path).toStdString()}}));
        else
            destinations_.push_back(path);
    }
    places_.look(destinations_);
    tellChosen();
}

void FastCopyViewModel::addDisk(const QString& bsdName) {
    const auto found = std::ranges::find(disks_, bsdName.toStdString(), &DiskFacts::bsdName);
    if (found == disks_.end() || found->holdsSystem)
        return;
    const auto isThis = [&](const copy::CopySource& each) {
        const auto* known = std::get_if<copy::RescueDisk>(&each);
        return known && known->bsdName == found->bsdName;
    };
    if (std::ranges::any_of(sources_, isThis)) {
        emit said(context_.texts().text("copy-page.said.source-twice", {{"name", printable(found->name)}}));
        return;
    }
    sources_.emplace_back(copy::RescueDisk{found->bsdName, found->name, found->bytes, found->isMounted});
    readHelper();
    measure();
}

void FastCopyViewModel::removeSource(int row) {
    if (row < 0 || static_cast<size_t>(row) >= sources_.size())
        return;
    sources_.erase(sources_.begin() + row);
    measure();
}

void FastCopyViewModel::removeDestination(int row) {
    if (row < 0 || static_cast<size_t>(row) >= destinations_.size())
        return;
    destinations_.erase(destinations_.begin() + row);
    tellChosen();
}

void FastCopyViewModel::makeDestination(int row) {
    if (row < 0 || static_cast<size_t>(row) >= destinations_.size())
        return;
    making_.run([path = destinations_[row]](const Background::Task&) { makeFolders(path); },
                [this](std::future<void> made) {
                    try {
                        made.get();
                    } catch (const std::exception& error) {
                        emit said(qtText(worded(messageOf(error), context_.texts().current())));
                    }
                    places_.look(destinations_);
                });
}

void FastCopyViewModel::clear() {
    sources_.clear();
    destinations_.clear();
    measure();
}

void FastCopyViewModel::refresh() {
    places_.look(sourcePaths());
    places_.look(destinations_);
    if (hasDisk())
        readHelper();
    measure();
}

void FastCopyViewModel::measure() {
    plan_.reset();
    if (const copy::RescueDisk* whole = disk())
        plan_ = copy::CopyPlan{1, 0, whole->size, whole->size};
    planning_.run(
        [paths = plan_ ? std::vector<std::string>() : sourcePaths(), links = options_.links](
            const Background::Task& task) { return copy::FastCopier::plan(paths, links, task.cancel); },
        [this](std::future<copy::CopyPlan> plan) {
            try {
                if (!plan_)
                    plan_ = plan.get();
            } catch (const std::exception&) { // what is missing stands at its row
            }
            tellChosen();
        });
    tellChosen();
}

void FastCopyViewModel::readHelper() {
    readingHelper_.run([blocker = dependencies_.diskBlocker, texts = context_.texts().current()](
                           const Background::Task&) { return blocker(texts); },
                       [this](std::future<std::string> blocker) {
                           diskBlocker_ = blocker.get();
                           tellChosen();
                       });
}

void FastCopyViewModel::lookForDisks() {
    readingDisks_.run([disks = dependencies_.disks](const Background::Task&) { return disks(); },
                      [this](std::future<std::vector<DiskFacts>> found) {
                          disks_ = found.get();
                          emit disksChanged();
                      });
}

void FastCopyViewModel::run() {
    if (!canRun())
        return;
    if (disk() && disk()->isMounted) {
        question_ =
            context_.texts().text("fast-copy.disk-unmount-question", {{"disk", printable(disk()->name)}});
        emit unmountQuestionChanged();
        return;
    }
    enqueue(false);
}

void FastCopyViewModel::answerUnmount(bool yes) {
    if (question_.isEmpty())
        return;
    question_.clear();
    emit unmountQuestionChanged();
    if (yes && canRun())
        enqueue(true);
}

void FastCopyViewModel::enqueue(bool unmount) {
    copy::CopyJob job;
    job.options = options_;
    job.manifest = manifest_;
    job.sources = std::exchange(sources_, {});
    job.destinations = std::exchange(destinations_, {});
    job.unmount = unmount;
    if (plan_) {
        job.bytes = plan_->bytes;
        job.fileCount = plan_->fileCount;
    }
    measure();
    queue_.enqueue(std::move(job));
}

void FastCopyViewModel::togglePause(const QString& job, int destination) {
    if (const auto id = Uuid::parse(job.toStdString()); id && destination >= 0)
        queue_.togglePause(*id, static_cast<size_t>(destination));
}

void FastCopyViewModel::remove(const QString& job, int destination) {
    if (const auto id = Uuid::parse(job.toStdString()); id && destination >= 0)
        queue_.remove(*id, static_cast<size_t>(destination));
}

void FastCopyViewModel::stop(const QString& job) {
    if (const auto id = Uuid::parse(job.toStdString()))
        queue_.stop(*id);
}

void FastCopyViewModel::takeOff(const QString& job) {
    if (const auto id = Uuid::parse(job.toStdString()))
        queue_.takeOff(*id);
}

bool FastCopyViewModel::hasFinished() const {
    return std::ranges::any_of(queue_.jobs(), &copy::CopyJob::isOver);
}

void FastCopyViewModel::followQueue() {
    std::vector<CopyJobRow> rows;
    for (const copy::CopyJob& job : queue_.jobs())
        rows.push_back(CopyWords(context_).row(job));
    rows_.setRows(std::move(rows));
    emit jobsChanged();
}

void FastCopyViewModel::tellEnd(const copy::CopyJob& job) {
    if (job.state != copy::CopyJob::State::stopped && (!worst_ || weightOf(job) >= weightOf(*worst_)))
        worst_ = job;
    if (queue_.isActive() || !worst_)
        return;
    emit life_.said(CopyWords(context_).toast(*worst_));
    worst_.reset();
    places_.look(destinations_);
}

void FastCopyViewModel::showReport(const QString& id) {
    const auto parsed = Uuid::parse(id.toStdString());
    const copy::CopyJob* const job = parsed ? queue_.job(*parsed) : nullptr;
    report_.clear();
    reported_ = job ? job->report : nullptr;
    if (job && job->isOver()) {
        const CopyWords words(context_);
        const CopyJobRow row = words.row(*job);
        QStringList problems, manifests;
        const Messages faults = reported_ ? reported_->problems() : Messages();
        for (const Message& each : faults | std::views::take(mostProblems))
            problems << qtText(worded(each, context_.texts().current()));
        for (const std::string& each : job->manifests)
            manifests << words.placePath(each);
        if (job->imagePath)
            manifests << words.placePath(*job->imagePath);
        report_ = {{QStringLiteral("title"), row.title},
                   {QStringLiteral("headline"), words.headline(*job)},
                   {QStringLiteral("outcome"), row.outcome},
                   {QStringLiteral("line"), row.line},
                   {QStringLiteral("lanes"), row.lanes},
                   {QStringLiteral("manifests"), manifests},
                   {QStringLiteral("problems"), problems},
                   {QStringLiteral("problemCount"), int(faults.size())},
                   {QStringLiteral("fileCount"), reported_ ? int(reported_->files.size()) : 0}};
    }
    files_.show(reported_, false);
    emit reportChanged();
}

void FastCopyViewModel::showFiles(bool faultyOnly) {
    files_.show(reported_, faultyOnly);
}

} // namespace vh::app

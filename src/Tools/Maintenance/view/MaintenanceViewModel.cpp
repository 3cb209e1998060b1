#include "Tools/Maintenance/view/MaintenanceViewModel.h"

#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Core/RunWords.h"
#include "HelperKit/MaintenanceTexts.h"
#include "Tools/Maintenance/work/MaintenanceJob.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/DayTexts.h"
#include "app/Session.h"

#include <algorithm>
#include <cmath>

namespace vh::app {

namespace {

constexpr QLatin1String maintenanceTool{"maintenance"};

constexpr std::chrono::seconds tick{1};
/// Opening a long log takes the main thread some tens of milliseconds; by then the first frame is there.
constexpr std::chrono::milliseconds openLogDelay{100};

} // namespace

MaintenanceViewModel::MaintenanceViewModel(AppContext& context, helper::MaintenanceWork work)
    : context_(context), work_(std::move(work)) {
    connect(&context_.texts(), &AppTexts::changed, this, &MaintenanceViewModel::tasksChanged);
    connect(&context_.texts(), &AppTexts::changed, this, &MaintenanceViewModel::runChanged);
    ticking_.setInterval(tick);
    connect(&ticking_, &QTimer::timeout, this, &MaintenanceViewModel::elapsedChanged);
    QTimer::singleShot(openLogDelay, this, &MaintenanceViewModel::openLog);
}

MaintenanceViewModel::~MaintenanceViewModel() = default;

void MaintenanceViewModel::openLog() {
    readingLog_.run([&log = context_.session().runLog()](
                        const Background::Task&) { return log.last(maintenanceTool.data()); },
                    [this](std::future<std::optional<RunRecord>> last) {
                        const auto record = last.get();
                        if (!record || last_)
                            return;
                        last_ = RunSummary{{},
                                           summaryOf(*record, context_.texts().current()),
                                           record->outcome,
                                           record->startedAt,
                                           record->duration};
                        emit runChanged();
                    });
}

void MaintenanceViewModel::refresh() {
    readingHelper_.run(
        [this](const Background::Task&) {
            return std::ranges::none_of(helper::listedTasks(),
                                        [this](MaintenanceTask task) { return work_.lacksHelper(task); });
        },
        [this](std::future<bool> ready) {
            helperIsReady_ = ready.get();
            emit helperChanged();
        });
    emit tasksChanged();
    emit helperChanged();
}

void MaintenanceViewModel::run(const QString& name) {
    const auto task = fromRaw<MaintenanceTask>(name.toStdString());
    if (!task || running_)
        return;
    running_ = task;
    startedAt_ = context_.now();
    stopping_ = false;
    notice_.clear();
    const QString title =
        context_.texts().text("maintenance-page.running.job", {{"task", titleOf(*task).toStdString()}});
    const auto token = std::make_shared<JobToken>(
        context_.activity().beginToken(title, maintenanceTool, AtClosing::isAsked));
    working_.run(
        [this, task = *task, &log = context_.session().runLog(), texts = context_.texts().current(),
         token](const Background::Task& job) {
            return automation::runMaintenance(task, work_, log, Trigger::manual, texts, {job.cancel, {}});
        },
        [this, task = *task](std::future<automation::MaintenanceJobResult> result) {
            try {
                finish(task, result.get());
            } catch (const std::exception& error) {
                notice_ = context_.texts().errorText(error);
            }
            running_.reset();
            ticking_.stop();
            emit runChanged();
        });
    ticking_.start();
    emit runChanged();
    emit elapsedChanged();
}

void MaintenanceViewModel::finish(MaintenanceTask task, const automation::MaintenanceJobResult& result) {
    last_ = RunSummary{task, result.record.summary, result.record.outcome, result.record.startedAt,
                       result.record.duration};
    ended_.insert_or_assign(task, *last_);
    log_ = qtText(result.output).remove(QChar(0));
}

void MaintenanceViewModel::stop() {
    if (!running_)
        return;
    stopping_ = true;
    working_.cancel();
    emit runChanged();
}

QVariantList MaintenanceViewModel::tasks() const {
    const Texts& texts = context_.texts().current();
    const helper::MaintenanceSystem system = work_.system();
    QVariantList list;
    for (const MaintenanceTask task : helper::listedTasks())
        list << QVariantMap{
            {QStringLiteral("value"), qtText(rawValue(task))},
            {QStringLiteral("title"), titleOf(task)},
            {QStringLiteral("detail"), qtText(helper::taskDetail(task, system, texts))},
            {QStringLiteral("requiresRoot"), helper::requiresRoot(task, system)},
            {QStringLiteral("isSlow"), helper::isSlow(task, system)},
            {QStringLiteral("missing"), qtText(helper::blockerText(work_.planOf(task), texts))},
        };
    std::ranges::stable_partition(list, [](const QVariant& task) {
        return task.toMap()[QStringLiteral("missing")].toString().isEmpty();
    });
    return list;
}

QString MaintenanceViewModel::titleOf(MaintenanceTask task) const {
    return qtText(helper::taskTitle(task, work_.system(), context_.texts().current()));
}

QString MaintenanceViewModel::running() const {
    return running_ ? qtText(rawValue(*running_)) : QString();
}

QString MaintenanceViewModel::runningTitle() const {
    return running_ ? titleOf(*running_) : QString();
}

QString MaintenanceViewModel::elapsedText() const {
    if (!running_)
        return {};
    const std::chrono::duration<double> gone = context_.now() - startedAt_;
    return context_.texts().durationText(std::max(0.0, std::floor(gone.count())));
}

QVariantMap MaintenanceViewModel::lastRun() const {
    if (!last_)
        return {};
    const AppTexts& texts = context_.texts();
    const DayTexts days(texts.current(), context_.calendar(), context_.now());
    const std::string outcome(rawValue(last_->outcome));
    return {
        {QStringLiteral("taskTitle"), last_->task ? titleOf(*last_->task) : QString()},
        {QStringLiteral("summary"), qtText(printable(last_->summary))},
        {QStringLiteral("outcome"), qtText(outcome)},
        {QStringLiteral("outcomeTitle"), texts.text("outcome." + outcome)},
        {QStringLiteral("timeText"),
         days.full(last_->time) + QStringLiteral(" · ") + texts.durationText(last_->duration)},
    };
}

QVariantMap MaintenanceViewModel::results() const {
    const DayTexts days(context_.texts().current(), context_.calendar(), context_.now());
    QVariantMap map;
    for (const auto& [task, run] : ended_) {
        const std::string outcome(rawValue(run.outcome));
        map[qtText(rawValue(task))] = QVariantMap{
            {QStringLiteral("outcome"), qtText(outcome)},
            {QStringLiteral("text"),
             context_.texts().text("outcome." + outcome) + u' ' + days.brief(run.time)},
        };
    }
    return map;
}

} // namespace vh::app

#include "Features/Optimize/view/OptimizeViewModel.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Core/RunUndo.h"
#include "Core/RunWords.h"
#include "Features/Optimize/work/OptimizeService.h"
#include "HelperKit/MaintenanceWork.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/DayTexts.h"
#include "app/ModuleRegistry.h"
#include "app/RunLogWatch.h"
#include "app/Session.h"
#include "app/ToolLook.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace vh::app {

namespace {

using automation::OptimizeProfile;
using automation::OptimizeRunner;
using StepState = OptimizeRunner::StepState;

/// Opening a long log takes the main thread some tens of milliseconds; by then the first frame is there.
constexpr std::chrono::milliseconds openLogDelay{100};
constexpr std::chrono::seconds tick{1};

/// The switches of a profile, in the order of the steps.
struct Switch {
    const char* key;
    ScheduledAction action;
    bool OptimizeProfile::*flag; ///< nothing where the step is a list of tasks
};
constexpr Switch switches[] = {
    {"cleanStorage", ScheduledAction::cleanStorage, &OptimizeProfile::cleanStorage},
    {"cleanPrivacy", ScheduledAction::cleanPrivacy, &OptimizeProfile::cleanPrivacy},
    {"maintenanceTasks", ScheduledAction::maintenance, nullptr},
    {"smartHealth", ScheduledAction::smartHealth, &OptimizeProfile::smartHealth},
};

/// How far its part of the belt is filled: an unknown share while it runs, nothing when it was left out.
double fillOf(StepState state) {
    switch (state) {
    case StepState::pending:
    case StepState::skipped:
        return 0;
    case StepState::running:
        return -1;
    default:
        return 1;
    }
}

std::optional<Outcome> outcomeOf(StepState state) {
    switch (state) {
    case StepState::done:
        return Outcome::success;
    case StepState::warning:
        return Outcome::warning;
    case StepState::failed:
        return Outcome::failed;
    case StepState::skipped:
        return Outcome::cancelled;
    default:
        return std::nullopt;
    }
}

/// Of this tool's records only that of an undo counts what it processed.
bool isUndo(const RunRecord& record) {
    return record.metric(RunMetric::itemsProcessed).has_value();
}

std::string_view stateKey(StepState state) {
    switch (state) {
    case StepState::pending:
        return "home.optimize.state.pending";
    case StepState::running:
        return "home.optimize.state.running";
    case StepState::done:
        return "outcome.success";
    case StepState::warning:
        return "outcome.warning";
    case StepState::failed:
        return "outcome.failed";
    case StepState::skipped:
        break;
    }
    return "home.optimize.state.skipped";
}

} // namespace

OptimizeViewModel::OptimizeViewModel(AppContext& context, AutomationLife& life)
    : context_(context), life_(life), profile_(OptimizeProfile::load(context.session().defaults())),
      steps_(stepsOfNow()) {
    connect(&context_.texts(), &AppTexts::changed, this, &OptimizeViewModel::retell);
    ticking_.setInterval(tick);
    connect(&ticking_, &QTimer::timeout, this, &OptimizeViewModel::elapsedChanged);
    QTimer::singleShot(openLogDelay, this, &OptimizeViewModel::openLog);
}

OptimizeViewModel::~OptimizeViewModel() = default;

OptimizeRunner& OptimizeViewModel::runner() {
    OptimizeRunner& runner = life_.automation().service<automation::OptimizeService>().runner();
    if (!observing_)
        observing_ = runner.observe([this] { follow(); });
    return runner;
}

void OptimizeViewModel::openLog() {
    connect(&context_.runs(), &RunLogWatch::changed, this, &OptimizeViewModel::readPast);
    readPast();
    runner();
    follow();
}

void OptimizeViewModel::Past::add(RunRecord&& record) {
    if (isUndo(record)) {
        freedBytes -= static_cast<double>(record.bytes().value_or(0));
    } else {
        freedBytes += record.metric(RunMetric::freedBytes).value_or(0);
        last = std::move(record);
    }
}

void OptimizeViewModel::readPast() {
    readingPast_.run(
        [stores = context_.runStores()](const Background::Task&) {
            Past past;
            for (RunRecord& record : stores.log.all())
                if (record.toolID == rawValue(ScheduledAction::optimize))
                    past.add(std::move(record));
            if (past.last)
                past.canUndo = vh::canUndo(stores.files.rows(past.last->id));
            return past;
        },
        [this](std::future<Past> past) {
            try {
                past_ = past.get();
            } catch (const std::exception&) {
                // A list of files that cannot be read: shown as last known.
            }
            emit pastChanged();
        });
}

void OptimizeViewModel::readHelper() {
    readingHelper_.run(
        [&helper = context_.session().helper(), tasks = profile_.tasks()](const Background::Task&) {
            const helper::MaintenanceWork work(&helper);
            return std::ranges::any_of(tasks, [&](MaintenanceTask task) { return work.lacksHelper(task); });
        },
        [this](std::future<bool> needed) {
            needsHelper_ = needed.get();
            emit helperChanged();
        });
}

void OptimizeViewModel::follow() {
    const bool wasRunning = state_.isRunning;
    state_ = runner().snapshot();
    if (state_.isRunning && !wasRunning) {
        profileIsNewer_ = false;
        ticking_.start();
    }
    if (!state_.isRunning) {
        ticking_.stop();
        stopping_ = false;
    }
    emitWork();
    emit checksChanged();
}

void OptimizeViewModel::emitWork() {
    // The same steps again would begin their pictures anew.
    if (QVariantList steps = stepsOfNow(); steps != steps_) {
        steps_ = std::move(steps);
        emit stepsChanged();
    }
    emit changed();
    emit elapsedChanged();
    emit pastChanged();
}

void OptimizeViewModel::retell() {
    emitWork();
    emit checksChanged();
}

void OptimizeViewModel::run() {
    if (isRunning())
        return;
    profileIsNewer_ = false;
    profile_ = OptimizeProfile::load(context_.session().defaults());
    working_.run(
        [&runner = runner(), profile = profile_](const Background::Task& task) {
            return runner.run(profile, Trigger::manual, {task.cancel, {}});
        },
        [this](std::future<RunRecord> result) {
            const RunRecord record = result.get();
            follow();
            // Refused, such as because another process runs it: nothing else shows that.
            if (!state_.lastRecord || state_.lastRecord->id != record.id)
                emit said(qtText(printable(record.summary)));
        });
    emitWork();
}

void OptimizeViewModel::cancel() {
    if (!isRunning() || std::exchange(stopping_, true))
        return;
    runner().requestCancel();
    emit changed();
}

void OptimizeViewModel::check() {
    if (isChecking())
        return;
    profile_ = OptimizeProfile::load(context_.session().defaults());
    readHelper();
    checking_.run(
        [&runner = runner(), profile = profile_](const Background::Task& task) {
            return runner.check(profile, {task.cancel, {}});
        },
        [this](std::future<std::vector<OptimizeRunner::Check>> checks) {
            try {
                checks.get();
            } catch (const std::exception&) {
                // Stopped by the person; the runner remembers what it has seen.
            }
            follow();
        });
    emit checksChanged();
}

void OptimizeViewModel::stopCheck() {
    checking_.cancel();
}

void OptimizeViewModel::undo() {
    if (!canUndo() || !last())
        return;
    const auto token = std::make_shared<JobToken>(context_.activity().beginToken(
        context_.texts().text("cache.undoing"), automation::OptimizeService::key, AtClosing::isAsked));
    undoing_.run(
        [id = last()->id, stores = context_.runStores(), texts = context_.texts().current(),
         token](const Background::Task& task) {
            return undoRun(id, Trigger::manual, stores, texts, {task.cancel, {}});
        },
        [this](std::future<UndoResult> result) { finishUndo(std::move(result)); });
    emit pastChanged();
}

void OptimizeViewModel::finishUndo(std::future<UndoResult> result) {
    try {
        emit said(qtText(printable(result.get().record.summary)));
    } catch (const std::exception& error) {
        emit said(context_.texts().errorText(error));
    }
    readPast();
}

QString OptimizeViewModel::line() const {
    if (state_.isRunning && !state_.detail.empty())
        return qtText(printable(state_.detail));
    if (showsRun() && state_.lastRecord)
        return qtText(printable(summaryOf(*state_.lastRecord, context_.texts().current())));
    QStringList parts;
    for (const OptimizeProfile::Step& step : profile_.steps())
        parts << context_.texts().text(fmt::format("home.optimize.does.{}", rawValue(step.action)),
                                       {{"count", profile_.tasks().size()}});
    if (parts.isEmpty())
        return context_.texts().text("home.optimize.nothing-chosen");
    parts.front().replace(0, 1, parts.front().at(0).toUpper());
    return parts.join(QStringLiteral(" · "));
}

QVariantList OptimizeViewModel::stepsOfNow() const {
    QVariantList list;
    if (showsRun()) {
        for (const OptimizeRunner::Step& step : state_.steps)
            list << stepRow(step);
    } else {
        for (const OptimizeProfile::Step& step : profile_.steps())
            list << stepRow({.action = step.action, .payload = step.payload});
    }
    return list;
}

QVariantMap OptimizeViewModel::stepRow(const OptimizeRunner::Step& step) const {
    const AppTexts& texts = context_.texts();
    QStringList details;
    for (const std::string& detail : step.details)
        if (detail != step.text) // of a single fault the text says all
            details << qtText(printable(detail));
    const auto outcome = outcomeOf(step.state);
    return {
        {QStringLiteral("action"), qtText(rawValue(step.action))},
        {QStringLiteral("title"), texts.text(fmt::format("home.optimize.step.{}", rawValue(step.action)))},
        {QStringLiteral("name"), qtText(titleOf(step.action, texts.current()))},
        {QStringLiteral("value"), fillOf(step.state)},
        {QStringLiteral("outcome"), outcome ? qtText(rawValue(*outcome)) : QString()},
        {QStringLiteral("stateText"), texts.text(stateKey(step.state))},
        {QStringLiteral("text"), qtText(printable(step.text))},
        {QStringLiteral("details"), details},
        {QStringLiteral("durationText"), step.duration ? texts.durationText(*step.duration) : QString()},
    };
}

QString OptimizeViewModel::elapsedText() const {
    if (!state_.isRunning || !state_.startedAt)
        return {};
    const std::chrono::duration<double> gone = context_.now() - *state_.startedAt;
    return context_.texts().durationText(std::max(0.0, std::floor(gone.count())));
}

const RunRecord* OptimizeViewModel::last() const {
    // The log also knows runs of other processes, the runner those that could not be logged.
    const bool isNewer = state_.lastRecord && !isUndo(*state_.lastRecord) &&
                         (!past_.last || past_.last->startedAt < state_.lastRecord->startedAt);
    return isNewer ? &*state_.lastRecord : past_.last ? &*past_.last : nullptr;
}

QString OptimizeViewModel::lastText() const {
    const RunRecord* record = last();
    if (!record)
        return {};
    const LocalCalendar& calendar = context_.calendar();
    const Date today = calendar.startOfDay(context_.now());
    const Date day = calendar.startOfDay(record->startedAt);
    const Date yesterday = calendar.startOfDay(today - std::chrono::hours(1));
    const DayTexts days(context_.texts().current(), calendar, context_.now());
    const char* when = day == today ? "today" : day == yesterday ? "yesterday" : "other";
    return context_.texts().text(fmt::format("home.optimize.last.{}", rawValue(record->outcome)),
                                 {{"when", when}, {"day", days.brief(record->startedAt).toStdString()}});
}

QString OptimizeViewModel::lastOutcome() const {
    return last() ? qtText(rawValue(last()->outcome)) : QString();
}

QString OptimizeViewModel::lastSummary() const {
    return last() ? qtText(printable(summaryOf(*last(), context_.texts().current()))) : QString();
}

QString OptimizeViewModel::freedText() const {
    if (past_.freedBytes <= 0)
        return {};
    const QString size = context_.texts().sizeText(static_cast<int64_t>(past_.freedBytes));
    return context_.texts().text("home.optimize.freed", {{"size", size.toStdString()}});
}

QVariantList OptimizeViewModel::checks() const {
    QVariantList list;
    for (const OptimizeRunner::Check& check : state_.checks)
        list << QVariantMap{
            {QStringLiteral("icon"), toolIcon(rawValue(check.action))},
            {QStringLiteral("title"), qtText(printable(check.title))},
            {QStringLiteral("detail"), qtText(printable(check.detail))},
            {QStringLiteral("removes"), check.removes},
        };
    return list;
}

QVariantMap OptimizeViewModel::profile() const {
    const auto profile = OptimizeProfile::load(context_.session().defaults());
    QVariantMap map;
    for (const Switch& each : switches)
        if (each.flag)
            map[qtText(each.key)] = profile.*each.flag;
    QStringList tasks;
    for (const std::string& task : profile.maintenanceTasks)
        tasks << qtText(task);
    map[QStringLiteral("maintenanceTasks")] = tasks;
    return map;
}

QString OptimizeViewModel::saveProfile(const QVariantMap& map) {
    OptimizeProfile profile;
    for (const Switch& each : switches)
        if (each.flag)
            profile.*each.flag = map[qtText(each.key)].toBool();
    for (const QString& task : map[QStringLiteral("maintenanceTasks")].toStringList())
        profile.maintenanceTasks.push_back(task.toStdString());
    try {
        profile.save(context_.session().defaults());
    } catch (const std::exception& error) {
        return context_.texts().errorText(error);
    }
    profile_ = std::move(profile);
    profileIsNewer_ = !isRunning();
    emitWork();
    return {};
}

QVariantList OptimizeViewModel::profileSteps() const {
    QVariantList list;
    for (const Switch& each : switches) {
        const std::string_view id = rawValue(each.action);
        list << QVariantMap{
            {QStringLiteral("key"), qtText(each.key)},
            {QStringLiteral("title"), qtText(titleOf(each.action, context_.texts().current()))},
            {QStringLiteral("line"), context_.texts().text(fmt::format("home.optimize.about.{}", id))},
            {QStringLiteral("isAvailable"), context_.session().registry().hasEngine(id)},
        };
    }
    return list;
}

} // namespace vh::app

#include "Features/Schedules/view/SchedulesViewModel.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Core/ScheduleStore.h"
#include "Features/Schedules/view/ScheduleDraft.h"
#include "Features/Schedules/work/Scheduler.h"
#include "Features/Schedules/work/SchedulesService.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/DayTexts.h"
#include "app/ModuleRegistry.h"
#include "app/Options.h"
#include "app/Session.h"

#include <QCollator>
#include <algorithm>

namespace vh::app {

namespace {

/// "In 12 min" stays true, and what another process changed is seen.
constexpr std::chrono::seconds lookInterval{5};

std::optional<Uuid> idOf(const QString& text) {
    return Uuid::parse(text.toStdString());
}

} // namespace

SchedulesViewModel::SchedulesViewModel(AppContext& context, AutomationLife& life)
    : context_(context), life_(life), rows_(ScheduleRow::roles()), dispatcher_(this) {
    connect(&context_.texts(), &AppTexts::changed, this, &SchedulesViewModel::languageChanged);
    connect(&context_.texts(), &AppTexts::changed, this, &SchedulesViewModel::leadChanged);
    connect(&context_.texts(), &AppTexts::changed, this, &SchedulesViewModel::refresh);
    connect(&life_, &AutomationLife::changed, this, &SchedulesViewModel::leadChanged);
    observingScheduler_ = scheduler().observe([this] { refresh(); });
    observingStore_ = store().observe([this, post = dispatcher_.post()] { post([this] { refresh(); }); });
    timer_.setInterval(lookInterval);
    connect(&timer_, &QTimer::timeout, this, &SchedulesViewModel::refresh);
    timer_.start();
    refresh();
}

ScheduleStore& SchedulesViewModel::store() const {
    return life_.automation().schedules();
}

automation::Scheduler& SchedulesViewModel::scheduler() const {
    return life_.automation().service<automation::SchedulesService>().scheduler();
}

void SchedulesViewModel::orderBy(const QString& key) {
    order_.press(key, key == u"last");
    refresh();
}

std::vector<ScheduledTask> SchedulesViewModel::orderedTasks() const {
    std::vector<ScheduledTask> tasks = store().tasks();
    const auto sortBy = [&](const auto& less) {
        std::ranges::stable_sort(tasks, [&](const ScheduledTask& one, const ScheduledTask& other) {
            return order_.descending ? less(other, one) : less(one, other);
        });
    };
    if (order_.key == u"task") {
        const QCollator collator(localeOf(context_.texts().current().language()));
        sortBy([&](const ScheduledTask& one, const ScheduledTask& other) {
            return collator.compare(qtText(printable(one.title)), qtText(printable(other.title))) < 0;
        });
    } else if (order_.key == u"last") {
        sortBy(
            [](const ScheduledTask& one, const ScheduledTask& other) { return one.lastRun < other.lastRun; });
    } else if (order_.key == u"next") {
        const auto next = [](const ScheduledTask& task) { // what does not run comes after all that does
            return task.isEnabled && task.nextRun ? *task.nextRun : Date::max();
        };
        sortBy([&](const ScheduledTask& one, const ScheduledTask& other) { return next(one) < next(other); });
    }
    return tasks;
}

void SchedulesViewModel::refresh() {
    std::vector<ScheduleRow> rows;
    for (const ScheduledTask& task : orderedTasks())
        rows.push_back(ScheduleRow::of(task, scheduler().runningTaskID() == task.id, context_));
    if (rows != rows_.rows())
        rows_.setRows(std::move(rows));
    emit tasksChanged();
}

QString SchedulesViewModel::countText() const {
    const auto on = std::ranges::count(rows_.rows(), true, &ScheduleRow::isEnabled);
    return context_.texts().text("schedules.count", {{"count", rows_.rows().size()}, {"on", on}});
}

QVariantMap SchedulesViewModel::selected() const {
    const auto row = std::ranges::find(rows_.rows(), selectedId_, &ScheduleRow::taskId);
    QVariantMap map;
    if (row != rows_.rows().end())
        for (const auto& role : ScheduleRow::roles())
            map[QString::fromLatin1(role.name)] = role.value(*row);
    return map;
}

QString SchedulesViewModel::runningTitle() const {
    const auto row = std::ranges::find(rows_.rows(), true, &ScheduleRow::isRunning);
    return row == rows_.rows().end() ? QString() : row->title;
}

QString SchedulesViewModel::progressText() const {
    return scheduler().runningTaskID() ? qtText(printable(scheduler().progressText())) : QString();
}

QString SchedulesViewModel::message() const {
    return qtText(printable(scheduler().lastMessage()));
}

QString SchedulesViewModel::leadText() const {
    const AppTexts& texts = context_.texts();
    QString text = texts.text("schedules.line");
    if (life_.isStarted())
        text += u' ' + texts.text(life_.isLeading() ? "schedules.line.here" : "schedules.line.elsewhere");
    return text;
}

QVariantList SchedulesViewModel::weekdayOptions() const {
    const QLocale locale = localeOf(context_.texts().language());
    QVariantList list;
    for (int i = 0; i < 7; ++i) {
        const int day = (int(locale.firstDayOfWeek()) - 1 + i) % 7 + 1; // of Qt: 7 is Sunday
        list << option(QString::number(day % 7 + 1), locale.standaloneDayName(day));
    }
    return list;
}

void SchedulesViewModel::select(const QString& id) {
    selectedId_ = id;
    emit tasksChanged();
}

void SchedulesViewModel::runNow(const QString& id) {
    const auto uuid = idOf(id);
    if (uuid && !scheduler().runNow(*uuid))
        emit said(context_.texts().text("schedules.busy"));
}

void SchedulesViewModel::stop() {
    scheduler().stopRunning();
}

void SchedulesViewModel::setEnabled(const QString& id, bool value) {
    if (const auto uuid = idOf(id))
        scheduler().setEnabled(*uuid, value);
    refresh();
}

void SchedulesViewModel::remove(const QString& id) {
    const auto uuid = idOf(id);
    if (!uuid)
        return;
    removed_ = store().task(*uuid);
    scheduler().remove(*uuid, true);
    refresh();
}

void SchedulesViewModel::undoRemove() {
    if (!removed_)
        return;
    store().upsert(*removed_);
    removed_.reset();
    refresh();
}

QVariantList SchedulesViewModel::actionOptions(const QString& present) const {
    QVariantList list;
    for (const ScheduledAction action : allCases<ScheduledAction>()) {
        const std::string_view id = rawValue(action);
        const bool isThere =
            action == ScheduledAction::optimize || context_.session().registry().hasEngine(id);
        if (isThere || qtText(id) == present)
            list << option(qtText(id), actionTitle(context_, id));
    }
    return list;
}

QVariantList SchedulesViewModel::payloadFields(const QString& action) const {
    return app::payloadFields(context_, action);
}

QVariantMap SchedulesViewModel::draft(const QString& id) const {
    const auto uuid = idOf(id);
    const auto task = uuid ? store().task(*uuid) : std::nullopt;
    return task ? draftOf(context_, *task) : newDraft(context_);
}

QString SchedulesViewModel::save(const QString& id, const QVariantMap& draft) {
    const auto uuid = idOf(id);
    std::optional<ScheduledTask> task = uuid ? store().task(*uuid) : std::nullopt;
    if (uuid && !task)
        return context_.texts().text("schedules.fault.gone");
    if (!task)
        task = makeTask({}, {}, {}, {}, HourlySchedule(), true, context_.now(), context_.calendar());
    const Schedule before = task->schedule;
    if (const auto fault = applyDraft(context_, draft, *task))
        return *fault;
    if (task->schedule != before || !task->nextRun)
        task->nextRun = vh::nextRun(task->schedule, context_.now(), context_.calendar());
    store().upsert(*task);
    selectedId_ = qtText(task->id.text());
    refresh();
    return {};
}

} // namespace vh::app

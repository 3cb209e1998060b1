#include "Core/Printable.h"
#include "Tools/FolderSync/SyncEngine.h"
#include "Tools/FolderSync/SyncRecord.h"
#include "Tools/FolderSync/view/FolderSyncViewModel.h"
#include "Tools/FolderSync/work/SyncRunner.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <QPointer>
#include <chrono>
#include <cmath>

namespace vh::app {

namespace {

using Kind = sync::SyncAction::Kind;
using End = automation::SyncJobResult::End;

/// Before that there is no telling when a sync ends.
constexpr double leastSeconds = 2;
constexpr double leastFraction = 0.01;

double secondsSince(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

} // namespace

void FolderSyncViewModel::say(std::string_view key, const std::vector<TextArgument>& arguments) {
    emit said(context_.texts().text(key, arguments));
}

bool FolderSyncViewModel::isRunningSelected() const {
    const auto& running = runner_.running();
    return running && running->pair == selected_;
}

FolderSyncViewModel::Phase FolderSyncViewModel::phase() const {
    if (isRunningSelected())
        return Phase::running;
    if (isPlanning_ && planned_ == selected_)
        return Phase::planning;
    return result_ && result_->pair == selected_ ? Phase::finished : Phase::idle;
}

QString FolderSyncViewModel::phaseName() const {
    switch (phase()) {
    case Phase::planning:
        return QStringLiteral("planning");
    case Phase::running:
        return QStringLiteral("running");
    case Phase::finished:
        return QStringLiteral("finished");
    case Phase::idle:
        break;
    }
    return QStringLiteral("idle");
}

// ---- the plan

void FolderSyncViewModel::compare() {
    makePlan(false);
}

void FolderSyncViewModel::sync() {
    if (hasPlan() && !isPlanning_)
        goOn();
    else
        makePlan(true);
}

void FolderSyncViewModel::makePlan(bool goesOn) {
    const auto pair = pairOf(selected_);
    if (!canSync() || isRunningSelected())
        return;
    forgetPlan();
    result_.reset();
    planned_ = selected_;
    isPlanning_ = true;
    work_.run(
        [pair = *pair](const Background::Task& task) { return sync::SyncEngine::plan(pair, task.cancel); },
        [this, goesOn](std::future<sync::SyncPlan> plan) {
            // One that was stopped may come back late, from a disk that took its time.
            if (!std::exchange(isPlanning_, false))
                return;
            try {
                showPlan(plan.get(), goesOn);
            } catch (const Cancelled&) {
            } catch (const std::exception& error) {
                failToPlan(error);
            }
            emit planChanged();
            emit stateChanged();
        });
    emit stateChanged();
    emit planChanged();
}

void FolderSyncViewModel::showPlan(const sync::SyncPlan& plan, bool goesOn) {
    actions_.setPlan(std::make_shared<const sync::SyncPlan>(plan));
    if (goesOn)
        goOn();
}

void FolderSyncViewModel::failToPlan(const std::exception& error) {
    const auto* known = dynamic_cast<const sync::SyncError*>(&error);
    const AppTexts& texts = context_.texts();
    if (!known)
        errorMessage_ = context_.texts().errorText(error);
    else if (known->kind == sync::SyncError::Kind::nested)
        errorMessage_ = texts.text("folder-sync.error-nested");
    else
        errorMessage_ =
            texts.text("folder-sync.error-missing",
                       {{"path", displayPath(known->path, context_.session().folders().home).toStdString()}});
}

void FolderSyncViewModel::goOn() {
    const auto& plan = actions_.plan();
    if (plan->isEmpty()) {
        runner_.approve(*planned_);
        emit said(context_.texts().text("folder-sync.toast-up-to-date") + u' ' +
                  context_.texts().text("folder-sync.nothing-to-do"));
    } else if (plan->deletes() < 1) {
        apply();
    } else {
        confirms_ = true;
        emit planChanged();
    }
}

void FolderSyncViewModel::decline() {
    confirms_ = false;
    emit planChanged();
}

void FolderSyncViewModel::approve() {
    if (!confirms_)
        return;
    confirms_ = false;
    apply();
    emit planChanged();
}

void FolderSyncViewModel::dismiss() {
    forgetPlan();
    result_.reset();
    emit stateChanged();
}

void FolderSyncViewModel::forgetPlan() {
    planned_.reset();
    confirms_ = false;
    isPlanning_ = false;
    work_.cancel();
    errorMessage_.clear();
    actions_.setPlan({});
    emit planChanged();
}

int FolderSyncViewModel::actionCount() const {
    return hasPlan() ? static_cast<int>(actions_.plan()->actions.size()) : 0;
}

QVariantList FolderSyncViewModel::kinds() const {
    if (!hasPlan())
        return {};
    const AppTexts& texts = context_.texts();
    QVariantList list;
    for (const Kind kind : {Kind::copy, Kind::update, Kind::remove, Kind::mkdir}) {
        int64_t count = 0;
        int64_t bytes = 0;
        for (const sync::SyncAction& each : actions_.plan()->actions)
            if (each.kind == kind) {
                ++count;
                bytes += each.bytes;
            }
        list << QVariantMap{
            {QStringLiteral("value"), qtText(rawValue(kind))},
            {QStringLiteral("title"), kindTitle(texts, kind)},
            {QStringLiteral("count"), QVariant::fromValue<qint64>(count)},
            {QStringLiteral("countText"), localeOf(texts.language()).toString(qint64(count))},
            {QStringLiteral("sizeText"),
             kind == Kind::mkdir || kind == Kind::remove || count == 0 ? QString() : texts.sizeText(bytes)},
        };
    }
    return list;
}

QString FolderSyncViewModel::unchangedText() const {
    return hasPlan() && actions_.plan()->unchanged > 0
               ? context_.texts().text("sync-page.unchanged", {{"count", actions_.plan()->unchanged}})
               : QString();
}

QString FolderSyncViewModel::planText() const {
    if (!hasPlan())
        return {};
    const AppTexts& texts = context_.texts();
    const sync::SyncPlan& plan = *actions_.plan();
    const QString leftOut = qtText(sync::leftOutText(plan.leftOut, texts.current()));
    if (plan.isEmpty())
        return QStringList{texts.text("folder-sync.nothing-to-do"), leftOut}.join(u' ').trimmed();
    QStringList parts;
    const int64_t copied = plan.copies() + plan.updates();
    if (copied > 0)
        parts << texts.text("sync-page.will.copy",
                            {{"count", copied}, {"size", texts.sizeText(plan.bytes()).toStdString()}});
    if (plan.deletes() > 0)
        parts << texts.text("sync-page.will.trash", {{"count", plan.deletes()}});
    const int64_t folders = int64_t(plan.actions.size()) - copied - plan.deletes();
    if (folders > 0)
        parts << texts.text("sync-page.will.folders", {{"count", folders}});
    if (!plan.unreadable.empty())
        parts << texts.text("sync-page.will.unreadable", {{"count", plan.unreadable.size()}});
    if (!leftOut.isEmpty())
        parts << leftOut;
    return parts.join(QStringLiteral(" · "));
}

QStringList FolderSyncViewModel::unreadable() const {
    QStringList list;
    if (hasPlan())
        for (const Message& each : actions_.plan()->unreadable)
            list << qtText(worded(each, context_.texts().current()));
    return list;
}

void FolderSyncViewModel::setKindName(const QString& kind) {
    kind_ = kind;
    actions_.setFilter(fromRaw<Kind>(kind_.toStdString()), search_);
    emit filterChanged();
}

void FolderSyncViewModel::setSearch(const QString& text) {
    search_ = text;
    actions_.setFilter(fromRaw<Kind>(kind_.toStdString()), search_);
    emit filterChanged();
}

void FolderSyncViewModel::orderBy(const QString& key) {
    if (order_.key == key && !order_.descending)
        order_ = {};
    else
        order_.press(key, true);
    actions_.setOrder(order_);
    emit filterChanged();
}

QVariantMap FolderSyncViewModel::confirmTrash() const {
    const auto pair = confirms_ ? pairOf(planned_) : std::nullopt;
    if (!pair)
        return {};
    const AppTexts& texts = context_.texts();
    const int64_t deletes = actions_.plan()->deletes();
    return {
        {QStringLiteral("title"),
         texts.text("sync-page.confirm.title", {{"count", deletes}, {"title", printable(pair->title())}})},
        {QStringLiteral("text"),
         texts.text("folder-sync.deletes-go-to-trash",
                    {{"count", deletes}, {"destination", displayName(pair->destination).toStdString()}})},
        {QStringLiteral("count"), QVariant::fromValue<qint64>(deletes)},
    };
}

// ---- the sync

void FolderSyncViewModel::apply() {
    const auto pair = pairOf(planned_);
    if (!pair)
        return;
    const bool begins =
        runner_.apply(*actions_.plan(), *pair, Trigger::manual,
                      [self = QPointer(this), id = pair->id](const automation::SyncJobResult& r) {
                          if (self)
                              self->finish(id, r);
                      });
    if (!begins) {
        say("folder-sync.another-sync-running");
        return;
    }
    applied_ = pair->id;
    result_.reset();
    refresh();
}

void FolderSyncViewModel::finish(const Uuid& pair, const automation::SyncJobResult& result) {
    applied_.reset();
    const sync::SyncResult& done = result.result;
    if (result.end == End::busy) {
        say("folder-sync.another-sync-running");
        refresh();
        return;
    }
    result_ = Result{pair, QStringLiteral("success"), qtText(printable(result.message)), {}};
    const QString numbers = context_.texts().text(
        "folder-sync.toast-done",
        {{"copied", done.copied}, {"updated", done.updated}, {"deleted", done.deleted}});
    for (const Message& fault : done.faults)
        result_->errors << qtText(worded(fault, context_.texts().current()));
    if (result.end != End::done && result.end != End::upToDate) {
        result_->outcome = QStringLiteral("failed");
        emit said(result_->text);
    } else if (done.stopped) {
        result_->outcome = QStringLiteral("cancelled");
        say("folder-sync.toast-stopped");
    } else if (!done.faults.empty()) {
        result_->outcome = QStringLiteral("warning");
        result_->text = numbers; // what the message says of the errors stands below it
        say("folder-sync.toast-problems", {{"count", done.faults.size()}});
    } else {
        emit said(numbers);
    }
    if (planned_ == pair)
        forgetPlan();
    refresh();
}

void FolderSyncViewModel::stop() {
    if (phase() == Phase::running) {
        runner_.stop();
    } else if (phase() == Phase::planning) {
        forgetPlan();
        emit stateChanged();
    }
}

QString FolderSyncViewModel::busyText() const {
    const auto& running = runner_.running();
    return running && running->pair != selected_
               ? context_.texts().text("sync-page.busy", {{"title", printable(running->title)}})
               : QString();
}

bool FolderSyncViewModel::isStopping() const {
    return isRunningSelected() && runner_.running()->isStopping;
}

double FolderSyncViewModel::progress() const {
    if (!isRunningSelected() || runner_.running()->total == 0)
        return -1;
    return runner_.running()->fraction;
}

QString FolderSyncViewModel::progressText() const {
    const AppTexts& texts = context_.texts();
    if (phase() == Phase::planning)
        return texts.text("sync-page.comparing");
    if (!isRunningSelected())
        return {};
    const automation::SyncRunner::Running& running = *runner_.running();
    if (running.isStopping)
        return texts.text("sync-page.stopping");
    if (running.total == 0)
        return texts.text("sync-page.comparing");
    QStringList parts{texts.text("sync-page.done-of", {{"done", running.done}, {"total", running.total}})};
    const double seconds = secondsSince(running.since);
    if (seconds < leastSeconds || running.fraction < leastFraction)
        return parts.front();
    if (running.bytes > 0) {
        const auto rate = static_cast<int64_t>(static_cast<double>(running.bytes) / seconds);
        parts << texts.text("sync-page.rate", {{"size", texts.sizeText(rate).toStdString()}});
    }
    const double left = std::ceil(seconds * (1 - running.fraction) / running.fraction);
    parts << texts.text("sync-page.left", {{"time", texts.durationText(left).toStdString()}});
    return parts.join(QStringLiteral(" · "));
}

QString FolderSyncViewModel::currentText() const {
    return isRunningSelected() ? qtText(printable(runner_.running()->current)) : QString();
}

QVariantMap FolderSyncViewModel::result() const {
    if (!result_ || result_->pair != selected_)
        return {};
    return {{QStringLiteral("outcome"), result_->outcome}, {QStringLiteral("text"), result_->text}};
}

QStringList FolderSyncViewModel::errors() const {
    return result_ && result_->pair == selected_ ? result_->errors : QStringList();
}

} // namespace vh::app

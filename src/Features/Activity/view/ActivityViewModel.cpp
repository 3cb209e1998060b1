#include "Features/Activity/view/ActivityViewModel.h"

#include "Core/ActivityExport.h"
#include "Core/Printable.h"
#include "Core/RunLog.h"
#include "Core/RunUndo.h"
#include "Core/ToolTexts.h"
#include "Platform/Files.h"
#include "app/ActivityCenter.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"
#include "app/Options.h"
#include "app/PathText.h"
#include "app/RunLogWatch.h"
#include "app/Session.h"

#include <algorithm>
#include <array>
#include <span>

namespace vh::app {

namespace {

/// Nobody reads further down, and a copy's list can have millions of rows.
constexpr size_t shownFiles = 10000;

/// How many of the items that stayed a message names.
constexpr size_t shownReasons = 3;

/// An export is for others to read too, as far as the folder lets them.
constexpr unsigned exportMode = 0644;

constexpr std::array periods{"all", "today", "yesterday", "7", "30", "90", "range"};

template <class T>
std::span<const T> firstOf(const std::vector<T>& list, size_t count) {
    return std::span(list).first(std::min(list.size(), count));
}

} // namespace

struct ActivityViewModel::SelectedRun {
    QVariantMap facts;
    std::vector<FileRow> files;
};

ActivityViewModel::ActivityViewModel(AppContext& context)
    : context_(context), runs_(RunRow::roles()), files_(FileRow::roles()) {
    connect(&context_.runs(), &RunLogWatch::changed, this, &ActivityViewModel::reload);
    connect(&context_.texts(), &AppTexts::changed, this, &ActivityViewModel::reload);
    load();
}

ActivityViewModel::~ActivityViewModel() = default;

QVariantList ActivityViewModel::periodOptions() const {
    QVariantList list;
    for (const char* period : periods)
        list << option(QString::fromLatin1(period),
                       context_.texts().text("activity.period." + std::string(period)));
    return list;
}

QVariantList ActivityViewModel::outcomeOptions() const {
    return words().outcomes();
}

ActivityWords ActivityViewModel::words() const {
    return {context_.texts().current(), context_.calendar(), context_.now(),
            context_.session().folders().home};
}

void ActivityViewModel::change(QString& field, const QString& value) {
    if (field == value)
        return;
    field = value;
    emit filterChanged();
    load();
}

void ActivityViewModel::clearFilter() {
    if (!isFiltered())
        return;
    filter_ = {};
    emit filterChanged();
    load();
}

QVariantMap ActivityViewModel::order() const {
    return order_.map();
}

void ActivityViewModel::orderBy(const QString& key) {
    order_.press(key, key != u"run" && key != u"trigger");
    emit orderChanged();
    load();
}

void ActivityViewModel::reload() {
    load();
    loadSelected();
}

void ActivityViewModel::load() {
    loading_.run(
        [&log = context_.session().runLog(), words = words(), filter = filter_, order = order_](
            const Background::Task& task) { return words.rows(log.all(), filter, order, task.cancel); },
        [this](std::future<ActivityRows> rows) { show(rows.get()); });
    emit runsChanged();
}

void ActivityViewModel::show(ActivityRows shown) {
    runs_.setRows(std::move(shown.rows));
    shown_ = std::move(shown);
    emit runsChanged();
    emit optionsChanged();
}

void ActivityViewModel::select(const QString& runId) {
    const auto id = Uuid::parse(runId.toStdString());
    if (!id || id == selectedId_)
        return;
    selectedId_ = id;
    loadSelected();
}

void ActivityViewModel::clearSelection() {
    selectedId_.reset();
    selecting_.cancel();
    showSelected({});
}

void ActivityViewModel::loadSelected() {
    if (!selectedId_)
        return;
    selecting_.run(
        [id = *selectedId_, words = words(),
         stores = context_.runStores()](const Background::Task&) -> SelectedRun {
            const auto all = stores.log.all();
            const auto found = std::ranges::find(all, id, &RunRecord::id);
            if (found == all.end())
                return {};
            const auto rows = stores.files.rows(id);
            SelectedRun run{.facts = words.facts(*found)};
            run.facts[QStringLiteral("canUndo")] = canUndo(rows);
            run.facts[QStringLiteral("fileCount")] = static_cast<int>(rows.size());
            run.files = words.files(firstOf(rows, shownFiles));
            return run;
        },
        [this](std::future<SelectedRun> run) {
            if (!selectedId_) // cleared meanwhile
                return;
            try {
                showSelected(run.get());
            } catch (const std::exception& error) {
                say(context_.texts().errorText(error));
            }
        });
}

void ActivityViewModel::showSelected(SelectedRun run) {
    if (run.facts.isEmpty())
        selectedId_.reset();
    selected_ = std::move(run.facts);
    files_.setRows(std::move(run.files));
    emit selectionChanged();
}

void ActivityViewModel::undo(const QString& runId) {
    const auto id = Uuid::parse(runId.toStdString());
    if (!id || undoing_.isBusy())
        return;
    const auto token = std::make_shared<JobToken>(context_.activity().beginToken(
        context_.texts().text("cache.undoing"), selected_.value(QStringLiteral("toolID")).toString()));
    undoing_.run(
        [id = *id, stores = context_.runStores(), texts = context_.texts().current(),
         token](const Background::Task& task) {
            return undoRun(id, Trigger::manual, stores, texts, {task.cancel, {}});
        },
        [this](std::future<UndoResult> result) {
            try {
                say(undoMessage(result.get()));
            } catch (const std::exception& error) {
                say(context_.texts().errorText(error));
            }
            loadSelected();
        });
}

QString ActivityViewModel::undoMessage(const UndoResult& undone) const {
    QStringList lines{qtText(printable(undone.record.summary))};
    for (const SkippedItem& item : firstOf(undone.skipped, shownReasons))
        lines << displayPath(item.path, context_.session().folders().home) + QStringLiteral(" — ") +
                     qtText(printable(item.reason));
    return lines.join(u'\n');
}

QString ActivityViewModel::exportPath(const QString& folder) const {
    const QString start = folder + u'/' + context_.texts().text("activity.export.file");
    const std::string& home = context_.session().folders().home;
    QString path = start + QStringLiteral(".csv");
    for (int number = 2; statusOf(chosenPath(path, home)); ++number)
        path = start + QStringLiteral(" %1.csv").arg(number);
    return path;
}

bool ActivityViewModel::exportCsv(const QString& fileUrlOrPath) {
    const std::string path = chosenPath(fileUrlOrPath, context_.session().folders().home);
    if (path.empty()) {
        say(context_.texts().text("activity.export.no-path", {{"path", fileUrlOrPath.toStdString()}}));
        return false;
    }
    try {
        const Texts& texts = context_.texts().current();
        const ActivityExport document{texts, std::string(code(texts.language())), context_.calendar()};
        writeFileAtomically(path, document.csv(shown_.records), exportMode);
    } catch (const std::exception& error) {
        say(context_.texts().errorText(error));
        return false;
    }
    say({});
    return true;
}

void ActivityViewModel::say(const QString& message) {
    message_ = message;
    emit messageChanged();
}

} // namespace vh::app

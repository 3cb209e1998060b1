#include "app/ScanCleanViewModel.h"

#include "Core/JobControl.h"
#include "Core/PathAllowlist.h"
#include "Core/Printable.h"
#include "Core/RunUndo.h"
#include "Core/SuiteModule.h"
#include "Core/ToolTexts.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <algorithm>

namespace vh::app {

namespace {

constexpr std::string_view categoryKeyPrefix = "scan.category.";

QString nameOf(Selected selected) {
    switch (selected) {
    case Selected::none:
        return QStringLiteral("none");
    case Selected::some:
        return QStringLiteral("some");
    case Selected::all:
        break;
    }
    return QStringLiteral("all");
}

int64_t trashedCount(const std::vector<RunFileRow>& rows) {
    return std::ranges::count(rows, cleanState::trashed, &RunFileRow::state);
}

} // namespace

ScanCleanViewModel::ScanCleanViewModel(AppContext& context, std::shared_ptr<SuiteModule> module)
    : context_(context), module_(std::move(module)), rows_(ScanItemRow::roles()) {
    connect(&context_.texts(), &AppTexts::changed, this, &ScanCleanViewModel::retell);
}

ScanCleanViewModel::~ScanCleanViewModel() = default;

// ---- what it shows

QString ScanCleanViewModel::toolID() const {
    return qtText(module_->id());
}

QString ScanCleanViewModel::stageName() const {
    switch (stage_) {
    case Stage::idle:
        return QStringLiteral("idle");
    case Stage::scanned:
        return QStringLiteral("scanned");
    case Stage::review:
        return QStringLiteral("review");
    case Stage::working:
        return QStringLiteral("working");
    case Stage::done:
        break;
    }
    return QStringLiteral("done");
}

QString ScanCleanViewModel::methodName() const {
    return qtText(rawValue(method_));
}

QString ScanCleanViewModel::totalText() const {
    return context_.texts().sizeText(selection_.report().totalBytes());
}

QVariantList ScanCleanViewModel::categories() const {
    const int64_t total = selection_.report().totalBytes();
    QVariantList list;
    for (const CategoryShare& share : selection_.categories())
        list << QVariantMap{
            {QStringLiteral("name"), qtText(share.name)},
            {QStringLiteral("title"), categoryTitle(share.name)},
            {QStringLiteral("bytes"), QVariant::fromValue<qint64>(share.bytes)},
            {QStringLiteral("sizeText"), context_.texts().sizeText(share.bytes)},
            {QStringLiteral("count"), share.count},
            {QStringLiteral("fraction"), total > 0 ? double(share.bytes) / double(total) : 0.0},
            {QStringLiteral("selection"), nameOf(share.selected)},
        };
    return list;
}

QString ScanCleanViewModel::selectedText() const {
    return context_.texts().sizeText(selection_.selectedBytes());
}

QString ScanCleanViewModel::shownSelection() const {
    return nameOf(selection_.shownSelection());
}

QVariantList ScanCleanViewModel::selectedItems() const {
    QVariantList list;
    for (const ScanItem* item : selection_.selectedItems())
        list << QVariantMap{
            {QStringLiteral("name"), displayName(item->path)},
            {QStringLiteral("displayPath"), displayPath(item->path, context_.session().folders().home)},
            {QStringLiteral("sizeText"), context_.texts().sizeText(item->byteSize)},
        };
    return list;
}

QString ScanCleanViewModel::undoText() const {
    return canUndo() ? context_.texts().text("cache.undo", {{"count", undoableCount_}}) : QString();
}

QString ScanCleanViewModel::categoryTitle(std::string_view category) const {
    QStringList titles;
    for (const QString& part : qtText(category).split(u'+')) {
        const std::string key = std::string(categoryKeyPrefix) + part.toStdString();
        titles << (context_.texts().current().has(key) ? context_.texts().text(key) : part);
    }
    return titles.join(QStringLiteral(" + "));
}

ScanItemRow ScanCleanViewModel::rowOf(const ScanItem& item, int64_t largest) const {
    const std::string& home = context_.session().folders().home;
    return {
        .id = item.id,
        .name = displayName(item.path),
        .path = displayPath(item.path, {}),
        .displayPath = displayPath(item.path, home),
        .byteSize = item.byteSize,
        .sizeText = context_.texts().sizeText(item.byteSize),
        .fraction = largest > 0 ? double(item.byteSize) / double(largest) : 0.0,
        .category = qtText(item.category),
        .categoryTitle = categoryTitle(item.category),
        .selected = selection_.selected().contains(item.id),
        .isProtected = protectedPaths_.contains(PathAllowlist::normalize(item.path)),
        .isRecent = item.recency != Recency::settled,
    };
}

void ScanCleanViewModel::rebuildRows() {
    const auto& items = selection_.report().items;
    const auto largest = std::ranges::max_element(items, {}, &ScanItem::byteSize);
    std::vector<ScanItemRow> rows;
    for (const ScanItem* item : selection_.shown())
        rows.push_back(rowOf(*item, largest->byteSize));
    rows_.setRows(std::move(rows));
}

void ScanCleanViewModel::retell() {
    rebuildRows();
    emit reportChanged();
    emit selectionChanged();
    emit resultChanged();
}

// ---- choosing

void ScanCleanViewModel::setMethodName(const QString& name) {
    const auto method = fromRaw<RemovalMethod>(name.toStdString());
    if (!method || *method == method_ || !isIdle())
        return;
    method_ = *method;
    emit stateChanged();
}

void ScanCleanViewModel::setSearch(const QString& text) {
    if (text == search_)
        return;
    search_ = text;
    selection_.setSearch(text.trimmed().toStdString());
    rebuildRows();
    emit filterChanged();
    emit selectionChanged();
}

void ScanCleanViewModel::setCategory(const QString& name) {
    if (name == category_)
        return;
    category_ = name;
    selection_.setCategory(name.toStdString());
    rebuildRows();
    emit filterChanged();
    emit selectionChanged();
}

void ScanCleanViewModel::setShowsRecent(bool value) {
    if (value == showsRecent_ || !isIdle() || stage_ == Stage::review)
        return;
    showsRecent_ = value;
    showReport(std::move(report_));
}

int ScanCleanViewModel::recentCount() const {
    return static_cast<int>(std::ranges::count(report_.items, Recency::recentInShared, &ScanItem::recency));
}

void ScanCleanViewModel::toggle(const QString& itemId) {
    if (const auto id = Uuid::parse(itemId.toStdString()))
        changeSelection([&] { selection_.toggle(*id); });
}

void ScanCleanViewModel::toggleAt(int row) {
    if (row >= 0 && row < rows_.rowCount())
        changeSelection([&] { selection_.toggle(rows_.rows()[static_cast<size_t>(row)].id); });
}

void ScanCleanViewModel::toggleCategory(const QString& name) {
    changeSelection([&] { selection_.toggleCategory(name.toStdString()); });
}

void ScanCleanViewModel::toggleSelectAll() {
    changeSelection([&] { selection_.toggleShown(); });
}

void ScanCleanViewModel::changeSelection(const std::function<void()>& change) {
    // The review is a promise of what will go.
    if (!isIdle() || stage_ == Stage::review)
        return;
    change();
    rows_.change([&](ScanItemRow& row) { row.selected = selection_.selected().contains(row.id); });
    emit selectionChanged();
}

void ScanCleanViewModel::review() {
    if (isIdle() && selectedCount() > 0)
        setStage(Stage::review);
}

void ScanCleanViewModel::back() {
    if (stage_ == Stage::review || stage_ == Stage::done)
        setStage(Stage::scanned);
}

// ---- working

void ScanCleanViewModel::setStage(Stage stage) {
    stage_ = stage;
    emit stateChanged();
}

void ScanCleanViewModel::setProgress(double fraction, const QString& text) {
    progress_ = fraction < 0 ? -1 : fraction;
    progressText_ = text;
    emit progressChanged();
    if (job_)
        context_.activity().setProgress(job_->key(), fraction < 0 ? std::nullopt : std::optional(fraction));
}

JobControl ScanCleanViewModel::controlOf(const Background::Task& task) {
    return {task.cancel, [this, task](double fraction, std::string_view what) {
                const QString text = displayPath(what, context_.session().folders().home);
                task.tell([this, fraction, text] { setProgress(fraction, text); });
            }};
}

void ScanCleanViewModel::stop() {
    work_.cancel();
}

void ScanCleanViewModel::scan() {
    if (!isIdle())
        return;
    clearResult();
    if (stage_ != Stage::idle)
        stage_ = Stage::scanned;
    startScan();
}

void ScanCleanViewModel::startScan() {
    isScanning_ = true;
    emit stateChanged();
    setProgress(-1, context_.texts().text("cache.scanning"));
    work_.run([this](const Background::Task& task) { return module_->scan(controlOf(task)); },
              [this](std::future<ScanReport> result) { finishScan(std::move(result)); });
}

void ScanCleanViewModel::finishScan(std::future<ScanReport> result) {
    isScanning_ = false;
    try {
        showReport(result.get());
        if (stage_ == Stage::idle)
            stage_ = Stage::scanned;
    } catch (const Cancelled&) {
        // What was known before still stands.
    } catch (const std::exception& error) {
        if (stage_ == Stage::done)
            showReport({});
        else
            errorMessage_ = context_.texts().errorText(error);
        emit resultChanged();
    }
    emit stateChanged();
}

void ScanCleanViewModel::showReport(ScanReport report) {
    report_ = std::move(report);
    selection_.setReport(showsRecent_ ? report_ : report_.withoutShared());
    rebuildRows();
    emit reportChanged();
    emit selectionChanged();
}

void ScanCleanViewModel::beginWork(std::string_view textKey) {
    clearResult();
    job_.emplace(context_.activity().beginToken(qtText(toolName(context_.texts().current(), module_->id())),
                                                toolID(), AtClosing::isAsked));
    setProgress(-1, context_.texts().text(textKey));
    setStage(Stage::working);
}

void ScanCleanViewModel::endWork() {
    job_.reset();
    setStage(Stage::done);
    emit resultChanged();
    // Shows what is left; the result stays.
    startScan();
}

void ScanCleanViewModel::start() {
    if (stage_ != Stage::review || !isIdle())
        return;
    beginWork("cache.cleaning");
    work_.run(
        [this, report = selection_.report(), selection = CleanSelection{selection_.selected(), method_},
         stores = context_.runStores(), texts = context_.texts().current()](const Background::Task& task) {
            return runClean(*module_, report, selection, Trigger::manual, stores, texts, controlOf(task));
        },
        [this](std::future<CleanJobResult> result) {
            try {
                finishClean(result.get());
            } catch (const std::exception& error) {
                showResult(Outcome::failed, error.what());
            }
            endWork();
        });
}

void ScanCleanViewModel::finishClean(CleanJobResult result) {
    std::set<std::string> removed;
    for (const CleanedItem& item : result.result.items) {
        if (!item.failure)
            removed.insert(item.path);
        if (item.landed)
            ++undoableCount_;
    }
    undoableRun_ = result.record.id;
    protectedPaths_ = std::move(result.protectedPaths);
    for (const std::string& line : result.skippedDetails)
        skippedDetails_ << qtText(line);
    showResult(result.record.outcome, result.record.summary);
    if (!result.trackingFailure.empty())
        resultText_ +=
            u' ' + context_.texts().text("cache.untracked", {{"reason", printable(result.trackingFailure)}});
    selection_.drop(removed);
    rebuildRows();
    emit reportChanged();
    emit selectionChanged();
}

void ScanCleanViewModel::undo() {
    if (!canUndo() || isCleaning())
        return;
    isScanning_ = false; // what was found before the undo would be out of date
    beginWork("cache.undoing");
    work_.run(
        [this, run = *undoableRun_, stores = context_.runStores(),
         texts = context_.texts().current()](const Background::Task& task) {
            UndoResult result = undoRun(run, Trigger::manual, stores, texts, controlOf(task));
            const auto rows = stores.files.rows(run);
            return std::pair(std::move(result), vh::canUndo(rows) ? trashedCount(rows) : 0);
        },
        [this](std::future<std::pair<UndoResult, int64_t>> result) {
            try {
                auto [undone, left] = result.get();
                undoableCount_ = left;
                finishUndo(undone);
            } catch (const std::exception& error) {
                showResult(Outcome::failed, error.what());
            }
            endWork();
        });
}

void ScanCleanViewModel::finishUndo(const UndoResult& result) {
    for (const SkippedItem& item : result.skipped)
        skippedDetails_ << displayPath(item.path, context_.session().folders().home) + QStringLiteral(" — ") +
                               qtText(item.reason);
    showResult(result.record.outcome, result.record.summary);
}

void ScanCleanViewModel::clearResult() {
    errorMessage_.clear();
    resultText_.clear();
    resultOutcome_.clear();
    skippedDetails_.clear();
    undoableCount_ = 0;
    emit resultChanged();
}

void ScanCleanViewModel::showResult(Outcome outcome, const std::string& text) {
    resultOutcome_ = qtText(rawValue(outcome));
    resultText_ = qtText(printable(text));
}

} // namespace vh::app

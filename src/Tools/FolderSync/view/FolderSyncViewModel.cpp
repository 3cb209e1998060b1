#include "Tools/FolderSync/view/FolderSyncViewModel.h"

#include "Core/Printable.h"
#include "Platform/LoginItem.h"
#include "Platform/PathParts.h"
#include "Tools/FolderSync/work/SyncRunner.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <algorithm>
#include <filesystem>

namespace vh::app {

namespace {

/// What another process changed is seen, and "today" stays true.
constexpr std::chrono::seconds lookInterval{5};
/// How often the eye is told.
constexpr std::chrono::milliseconds tellInterval{60};

std::optional<Uuid> idOf(const QString& text) {
    return Uuid::parse(text.toStdString());
}

/// As text alone: a folder may lie on a disk that does not answer.
std::string standardised(const std::string& path) {
    std::string text = std::filesystem::path(path).lexically_normal().string();
    while (text.size() > 1 && text.ends_with('/'))
        text.pop_back();
    return text;
}

} // namespace

FolderSyncViewModel::FolderSyncViewModel(AppContext& context, automation::SyncRunner& runner)
    : context_(context), runner_(runner), rows_(FolderSyncRow::roles()), actions_(context.texts()) {
    connect(&context_.texts(), &AppTexts::changed, this, &FolderSyncViewModel::tellAll);
    looking_.setInterval(lookInterval);
    connect(&looking_, &QTimer::timeout, this, &FolderSyncViewModel::refresh);
    soon_.setInterval(tellInterval);
    soon_.setSingleShot(true);
    connect(&soon_, &QTimer::timeout, this, &FolderSyncViewModel::refresh);
    observing_ = runner_.observe([this] {
        if (!soon_.isActive())
            soon_.start();
    });
    opensAtLogin_ = vh::opensAtLogin(context_.session().folders());
    looking_.start();
    refresh();
}

FolderSyncViewModel::~FolderSyncViewModel() = default;

void FolderSyncViewModel::refresh() {
    const auto& running = runner_.running();
    const auto states = runner_.states();
    const auto& results = runner_.results();
    const auto in = [](const auto& map, const Uuid& id) {
        const auto found = map.find(id);
        return found == map.end() ? nullptr : &found->second;
    };
    std::vector<FolderSyncRow> rows;
    bool isKnown = false;
    for (const sync::SyncPair& pair : runner_.pairs()) {
        rows.push_back(FolderSyncRow::of(pair,
                                         {.watch = in(states, pair.id),
                                          .last = in(results, pair.id),
                                          .isRunning = running && running->pair == pair.id,
                                          .isWatchedByAny = runner_.isWatched()},
                                         context_));
        isKnown = isKnown || pair.id == selected_;
    }
    if (!isKnown)
        selected_ = rows.empty() ? std::nullopt : idOf(rows.front().pairId);
    if (rows != rows_.rows())
        rows_.setRows(std::move(rows));
    if (running && running->pair == applied_)
        actions_.setDone(running->done);
    emit pairsChanged();
    emit stateChanged();
    if (!isKnown)
        emit planChanged();
}

void FolderSyncViewModel::tellAll() {
    actions_.retell();
    refresh();
    emit planChanged();
}

// ---- pairs

std::optional<sync::SyncPair> FolderSyncViewModel::pairOf(const std::optional<Uuid>& id) const {
    for (sync::SyncPair& pair : runner_.pairs())
        if (pair.id == id)
            return std::move(pair);
    return std::nullopt;
}

QString FolderSyncViewModel::countText() const {
    return context_.texts().text("sync-page.count",
                                 {{"count", rows_.rows().size()}, {"needing", runner_.needingAttention()}});
}

QVariantMap FolderSyncViewModel::selected() const {
    QVariantMap map;
    const QString id = selected_ ? qtText(selected_->text()) : QString();
    const auto row = std::ranges::find(rows_.rows(), id, &FolderSyncRow::pairId);
    if (row != rows_.rows().end())
        for (const auto& role : FolderSyncRow::roles())
            map[QString::fromLatin1(role.name)] = role.value(*row);
    return map;
}

bool FolderSyncViewModel::canSync() const {
    const auto pair = pairOf(selected_);
    return pair && !pair->source.empty() && !pair->destination.empty();
}

void FolderSyncViewModel::select(const QString& id) {
    selected_ = idOf(id);
    refresh();
    emit planChanged();
}

QVariantMap FolderSyncViewModel::draft(const QString& id) {
    const sync::SyncPair pair = pairOf(idOf(id)).value_or(sync::SyncPair());
    const std::string& home = context_.session().folders().home;
    return {
        {QStringLiteral("name"), qtText(printable(pair.name))},
        {QStringLiteral("source"), displayPath(pair.source, home)},
        {QStringLiteral("destination"), displayPath(pair.destination, home)},
        {QStringLiteral("deleteExtraneous"), pair.deleteExtraneous},
        {QStringLiteral("compareContents"), pair.compareContents},
        {QStringLiteral("watch"), pair.watch},
    };
}

QString FolderSyncViewModel::save(const QString& id, const QVariantMap& draft) {
    const auto known = idOf(id);
    auto pair = pairOf(known);
    if (known && !pair)
        return context_.texts().text("sync-page.fault.gone");
    const QVariantMap before = this->draft(id);
    if (!pair)
        pair = sync::SyncPair{.id = Uuid::random()};
    const std::string& home = context_.session().folders().home;
    // What was left as it is shown keeps its bytes, also those that cannot be shown.
    for (const auto& [key, place] : {std::pair("source", &pair->source), {"destination", &pair->destination}})
        if (const QString text = draft[QLatin1String(key)].toString(); text != before[QLatin1String(key)])
            *place = standardised(chosenPath(text, home));
    if (draft[QStringLiteral("name")] != before[QStringLiteral("name")])
        pair->name = draft[QStringLiteral("name")].toString().trimmed().toStdString();
    pair->deleteExtraneous = draft[QStringLiteral("deleteExtraneous")].toBool();
    pair->compareContents = draft[QStringLiteral("compareContents")].toBool();
    pair->watch = draft[QStringLiteral("watch")].toBool();
    if (pair->source.empty() || pair->destination.empty())
        return context_.texts().text("sync-page.fault.folders");
    if (isAtOrBelow(pair->destination, pair->source) || isAtOrBelow(pair->source, pair->destination))
        return context_.texts().text("folder-sync.error-nested");
    try {
        runner_.put(*pair);
    } catch (const std::exception& error) {
        return context_.texts().errorText(error);
    }
    if (planned_ == pair->id)
        forgetPlan();
    select(qtText(pair->id.text()));
    return {};
}

bool FolderSyncViewModel::store(const std::function<void()>& change) {
    try {
        change();
    } catch (const std::exception& error) {
        emit said(context_.texts().errorText(error));
        return false;
    }
    refresh();
    return true;
}

void FolderSyncViewModel::setWatch(const QString& id, bool watch) {
    auto pair = pairOf(idOf(id));
    if (!pair)
        return;
    pair->watch = watch;
    store([&] { runner_.put(*pair); });
}

void FolderSyncViewModel::remove(const QString& id) {
    const auto uuid = idOf(id);
    if (uuid && store([&] { runner_.remove(*uuid); }) && planned_ == uuid)
        forgetPlan();
}

void FolderSyncViewModel::enableOpenAtLogin(bool opens) {
    store([&] { setOpensAtLogin(opens, context_.session().folders()); });
    opensAtLogin_ = vh::opensAtLogin(context_.session().folders());
    emit loginChanged();
}

} // namespace vh::app

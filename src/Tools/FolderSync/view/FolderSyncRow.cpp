#include "Tools/FolderSync/view/FolderSyncRow.h"

#include "Core/Printable.h"
#include "Tools/FolderSync/SyncRecord.h"
#include "Tools/FolderSync/work/SyncJob.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"
#include "app/PathText.h"
#include "app/Session.h"

#include <fmt/format.h>

namespace vh::app {

namespace {

using State = sync::WatchState::Kind;
using End = automation::SyncJobResult::End;

/// The last of a path's names, as many as asked for.
QString lastNames(const QString& path, int count) {
    return path == u"/" ? path : path.section(u'/', -count);
}

struct Words {
    const char* outcome;
    const char* act;
};

Words wordsOf(State state) {
    switch (state) {
    case State::notPermitted:
        return {"failed", ""};
    case State::held:
        return {"warning", "plan"};
    case State::failed:
        return {"failed", "compare"};
    case State::waitingForSource:
        return {"warning", "edit"};
    case State::waitingForDestination:
        return {"warning", "edit"};
    case State::watching:
        break;
    }
    return {"success", ""};
}

void tellState(FolderSyncRow& row, const sync::WatchState& state, const AppTexts& texts,
               const std::string& home) {
    const Words words = wordsOf(state.kind);
    const std::string_view name = sync::textName(state.kind);
    row.outcome = QLatin1String(words.outcome);
    row.stateText = texts.text(fmt::format("sync-page.state.{}", name));
    if (state.isHealthy())
        return;
    const std::string detail = state.kind == State::notPermitted ? displayPath(state.text, home).toStdString()
                                                                 : printable(state.text);
    const std::vector<TextArgument> arguments{{"detail", detail},
                                              {"count", state.deletes},
                                              {"source", row.sourcePath.toStdString()},
                                              {"destination", row.destinationPath.toStdString()}};
    row.needTitle = texts.text(fmt::format("sync-page.need.{}.title", name), arguments);
    row.needText = texts.text(fmt::format("sync-page.need.{}.text", name), arguments);
    row.needAct = QLatin1String(words.act);
}

/// What the last run of this window left to look at.
bool tellLast(FolderSyncRow& row, const automation::SyncJobResult& last, const AppTexts& texts) {
    const bool isFaulty = last.end == End::failed || last.end == End::blocked ||
                          (last.end == End::done && !last.result.faults.empty());
    if (!isFaulty)
        return false;
    row.outcome = last.end == End::done ? QStringLiteral("warning") : QStringLiteral("failed");
    row.stateText =
        texts.text(last.end == End::done ? "sync-page.state.problems" : "sync-page.state.not-synced",
                   {{"count", last.result.faults.size()}});
    return true;
}

} // namespace

FolderSyncRow FolderSyncRow::of(const sync::SyncPair& pair, const Facts& facts, AppContext& context) {
    const AppTexts& texts = context.texts();
    const std::string& home = context.session().folders().home;
    FolderSyncRow row{.pairId = qtText(pair.id.text()),
                      .title = qtText(printable(pair.title())),
                      .ownName = qtText(printable(pair.name)),
                      .sourcePath = displayPath(pair.source, home),
                      .destinationPath = displayPath(pair.destination, home),
                      .deleteExtraneous = pair.deleteExtraneous,
                      .compareContents = pair.compareContents,
                      .watch = pair.watch,
                      .isRunning = facts.isRunning};
    // Folders are mostly called like what they mirror: then the one above tells them apart.
    const int names = lastNames(row.sourcePath, 1) == lastNames(row.destinationPath, 1) ? 2 : 1;
    row.sourceName = lastNames(row.sourcePath, names);
    row.destinationName = lastNames(row.destinationPath, names);
    const DayTexts days(texts.current(), context.calendar(), context.now());
    row.lastText = pair.lastSync
                       ? texts.text("sync-page.last", {{"day", days.brief(*pair.lastSync).toStdString()}})
                       : texts.text("sync-page.last.never");
    row.stateText = row.lastText;
    row.outcome = pair.lastSync ? QStringLiteral("success") : QString();
    if (facts.isRunning) {
        row.stateText = texts.text("sync-page.state.running");
    } else if (pair.source.empty() || pair.destination.empty()) {
        row.outcome = QStringLiteral("warning");
        row.stateText = texts.text("sync-page.state.unset");
    } else if (pair.watch && facts.watch && !facts.watch->isHealthy()) {
        tellState(row, *facts.watch, texts, home);
    } else if (facts.last && tellLast(row, *facts.last, texts)) {
    } else if (pair.watch && facts.watch) {
        tellState(row, *facts.watch, texts, home);
    } else if (pair.watch && !facts.isWatchedByAny) {
        row.outcome.clear();
        row.stateText = texts.text("sync-page.state.unwatched");
        row.needTitle = texts.text("sync-page.need.unwatched.title");
        row.needText = texts.text("sync-page.need.unwatched.text");
    }
    return row;
}

std::span<const RecordListModel<FolderSyncRow>::Role> FolderSyncRow::roles() {
    using Model = RecordListModel<FolderSyncRow>;
    static constexpr Model::Role list[] = {
        Model::role<&FolderSyncRow::pairId>("pairId"),
        Model::role<&FolderSyncRow::title>("title"),
        Model::role<&FolderSyncRow::ownName>("ownName"),
        Model::role<&FolderSyncRow::sourceName>("sourceName"),
        Model::role<&FolderSyncRow::destinationName>("destinationName"),
        Model::role<&FolderSyncRow::sourcePath>("sourcePath"),
        Model::role<&FolderSyncRow::destinationPath>("destinationPath"),
        Model::role<&FolderSyncRow::deleteExtraneous>("deleteExtraneous"),
        Model::role<&FolderSyncRow::compareContents>("compareContents"),
        Model::role<&FolderSyncRow::watch>("watch"),
        Model::role<&FolderSyncRow::isRunning>("isRunning"),
        Model::role<&FolderSyncRow::outcome>("outcome"),
        Model::role<&FolderSyncRow::stateText>("stateText"),
        Model::role<&FolderSyncRow::needTitle>("needTitle"),
        Model::role<&FolderSyncRow::needText>("needText"),
        Model::role<&FolderSyncRow::needAct>("needAct"),
        Model::role<&FolderSyncRow::lastText>("lastText"),
    };
    return list;
}

} // namespace vh::app

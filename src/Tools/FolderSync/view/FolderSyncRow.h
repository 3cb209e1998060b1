#pragma once

#include "app/RecordListModel.h"

#include <QString>

namespace vh::automation {
struct SyncJobResult;
}
namespace vh::sync {
struct SyncPair;
struct WatchState;
} // namespace vh::sync

namespace vh::app {

class AppContext;

/// A pair of folders as the list shows it, and what of it needs a person.
struct FolderSyncRow {
    /// What is known of a pair beside itself; what is not known is null.
    struct Facts {
        const sync::WatchState* watch = nullptr;
        const automation::SyncJobResult* last = nullptr;
        bool isRunning = false;
        bool isWatchedByAny = false; ///< some process watches
    };
    static FolderSyncRow of(const sync::SyncPair& pair, const Facts& facts, AppContext& context);

    QString pairId;
    QString title;
    QString ownName; ///< empty for a pair that is called after its folders
    QString sourceName;
    QString destinationName;
    QString sourcePath;
    QString destinationPath;
    bool deleteExtraneous = false;
    bool compareContents = false;
    bool watch = false;
    bool isRunning = false;
    QString outcome;   ///< whose shape and colour the state has: "success", "warning", "failed" or none
    QString stateText; ///< in a few words
    QString needTitle; ///< what is the matter; empty while nothing is
    QString needText;  ///< why, and what to do
    QString needAct;   ///< "plan", "compare" or "edit": what brings it further; else empty
    QString lastText;

    const QString& key() const { return pairId; }
    bool operator==(const FolderSyncRow&) const = default;
    static std::span<const RecordListModel<FolderSyncRow>::Role> roles();
};

} // namespace vh::app

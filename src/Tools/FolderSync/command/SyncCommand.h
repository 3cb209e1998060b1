#pragma once

#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/SyncPairStore.h"
#include "cli/CommandLine.h"

#include <optional>
#include <string>
#include <vector>

namespace vh {
class Texts;
}

namespace vh::cli {

/// The pairs of the context's user.
sync::SyncPairStore pairStore(Context& context);

/// The one of all pairs that a word names: identifier, its beginning, or title. Complains when it is none or several.
std::optional<sync::SyncPair> findPair(Context& context, const std::string& word);

/// Two folders as a person types them.
struct FolderWords {
    std::string source, destination;
    bool deletes = false;
    bool contents = false;

    void addTo(Verb& verb, const CommandLine& line, bool areRequired);
    bool isGiven() const { return !source.empty() || !destination.empty() || deletes || contents; }
    /// With absolute paths. Throws UsageError when a folder is not said.
    sync::SyncPair pair(const Texts& texts) const;
};

/// The verbs by what they are about.
void describeSyncPairs(Verb& noun, CommandLine& line);
void describeSyncRuns(Verb& noun, CommandLine& line);
void describeSyncWatch(Verb& noun, CommandLine& line);

} // namespace vh::cli

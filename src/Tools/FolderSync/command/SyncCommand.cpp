#include "Tools/FolderSync/command/SyncCommand.h"

#include "Core/Printable.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/NamedThing.h"

namespace vh::cli {

using sync::SyncPair;
using sync::SyncPairStore;

SyncPairStore pairStore(Context& context) {
    return SyncPairStore(SyncPairStore::fileIn(context.session.folders()));
}

std::optional<SyncPair> findPair(Context& context, const std::string& word) {
    std::vector<SyncPair> pairs = pairStore(context).load();
    for (SyncPair& each : pairs)
        each.name = each.title();
    return findNamed(context, std::move(pairs), word, {"cli.sync.unknown", "cli.sync.ambiguous"},
                     &SyncPair::name);
}

void FolderWords::addTo(Verb& verb, const CommandLine& line, bool areRequired) {
    verb.option("--source", &source, line.text("cli.sync.source")).valueName("DIR").required(areRequired);
    verb.option("--destination", &destination, line.text("cli.sync.destination"))
        .valueName("DIR")
        .required(areRequired);
    verb.option("--delete", &deletes, line.text("cli.sync.delete"));
    verb.option("--contents", &contents, line.text("cli.sync.contents"));
}

SyncPair FolderWords::pair(const Texts& texts) const {
    if (source.empty() || destination.empty())
        throw UsageError(texts.text("cli.sync.what"));
    SyncPair pair;
    pair.source = absolutePath(source);
    pair.destination = absolutePath(destination);
    pair.deleteExtraneous = deletes;
    pair.compareContents = contents;
    return pair;
}

void describeSync(Verb& noun, CommandLine& line) {
    describeSyncPairs(noun, line);
    describeSyncRuns(noun, line);
    describeSyncWatch(noun, line);
    noun.example("varnholt sync plan --source ~/Photos --destination /media/disk/Photos");
    noun.example(
        "varnholt sync add --source ~/Photos --destination /media/disk/Photos --name Photos --watch");
    noun.example("varnholt sync apply Photos");
}

} // namespace vh::cli

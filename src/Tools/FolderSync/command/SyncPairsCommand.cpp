#include "Core/Csv.h"
#include "Core/Fold.h"
#include "Core/LocalCalendar.h"
#include "Core/Printable.h"
#include "Tools/FolderSync/SyncEngine.h"
#include "Tools/FolderSync/SyncRecord.h"
#include "Tools/FolderSync/command/SyncCommand.h"
#include "Tools/FolderSync/work/SyncWatchFile.h"
#include "app/Session.h"
#include "cli/Consent.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <tuple>

namespace vh {

namespace cli {

/// A pair, and how it is where it is watched.
struct ListedPair : sync::SyncPair {
    std::optional<sync::WatchState> state;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::ListedPair> = std::apply(
    []<class... Values>(const Field<sync::SyncPair, Values>&... fields) {
        return record(field<cli::ListedPair, Values>(fields.name, fields.member)...,
                      field("state", &cli::ListedPair::state));
    },
    describe<sync::SyncPair>.fields);

} // namespace vh

namespace vh::cli {

namespace {

using sync::SyncPair;

struct AddWords {
    FolderWords folders;
    std::string name;
    bool watch = false;
};

std::string optionsOf(const SyncPair& pair, const Texts& texts) {
    std::vector<std::string> options;
    const auto add = [&](bool isSet, const char* key) {
        if (isSet)
            options.push_back(texts.text(key));
    };
    add(pair.deleteExtraneous, "cli.sync.option.delete");
    add(pair.compareContents, "cli.sync.option.contents");
    add(pair.watch, "cli.sync.option.watch");
    return fmt::format("{}", fmt::join(options, ", "));
}

std::vector<ListedPair> listedPairs(Context& context) {
    const auto states = automation::SyncWatchFile(context.session.folders()).states();
    std::vector<ListedPair> listed;
    for (SyncPair& pair : pairStore(context).load()) {
        ListedPair& each = listed.emplace_back(std::move(pair));
        if (const auto state = states.find(each.id); each.watch && state != states.end())
            each.state = state->second;
    }
    return listed;
}

std::string stateText(const ListedPair& pair, const Texts& texts) {
    if (!pair.watch)
        return {};
    return texts.text(
        fmt::format("sync-page.state.{}", pair.state ? sync::textName(pair.state->kind) : "unwatched"));
}

Exit listPairs(Context& context) {
    const auto pairs = listedPairs(context);
    if (context.format == Format::json) {
        printJson(pairs);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    if (pairs.empty()) {
        print(texts.text("cli.sync.none") + "\n");
        return Exit::done;
    }
    constexpr size_t shownOfIdentifier = 8;
    constexpr size_t toTheMinute = 16;
    Table table({{texts.text("cli.column.id")},
                 {texts.text("cli.column.name"), Align::left, true},
                 {texts.text("cli.sync.column.source"), Align::left, true},
                 {texts.text("cli.sync.column.destination"), Align::left, true},
                 {texts.text("cli.sync.column.options")},
                 {texts.text("cli.sync.column.state")},
                 {texts.text("cli.sync.column.last")}});
    for (const ListedPair& each : pairs)
        table.add({each.id.text().substr(0, shownOfIdentifier), printable(each.title()),
                   printable(each.source), printable(each.destination), optionsOf(each, texts),
                   stateText(each, texts),
                   each.lastSync ? timestamp(*each.lastSync, LocalCalendar()).substr(0, toTheMinute) : ""});
    print(table.text(outputWidth()));
    const auto isUnwatched = [](const ListedPair& each) {
        return each.watch && !each.state;
    };
    if (std::ranges::any_of(pairs, isUnwatched))
        print(texts.text("cli.sync.unwatched") + "\n");
    return Exit::done;
}

/// Complains when there is a pair already that could be taken for this one.
bool isNew(const SyncPair& pair, const std::vector<SyncPair>& pairs, const Texts& texts) {
    for (const SyncPair& each : pairs) {
        const bool isSame = each.source == pair.source && each.destination == pair.destination;
        if (!isSame && foldCase(each.title()) != foldCase(pair.title()))
            continue;
        complain(texts.text(isSame ? "cli.sync.known" : "cli.sync.name-taken",
                            {{"name", printable(each.title())}}));
        return false;
    }
    return true;
}

Exit addPair(Context& context, const AddWords& words) {
    const Texts& texts = context.session.texts();
    SyncPair pair = words.folders.pair(texts);
    pair.id = Uuid::random();
    pair.name = words.name;
    pair.watch = words.watch;
    try {
        sync::SyncEngine::check(pair);
    } catch (const sync::SyncError& error) {
        complain(textOf(error, texts));
        return Exit::failed;
    }
    bool isAdded = false;
    pairStore(context).change([&](std::vector<SyncPair>& pairs) {
        isAdded = isNew(pair, pairs, texts);
        if (isAdded)
            pairs.push_back(pair);
    });
    if (!isAdded)
        return Exit::failed;
    if (context.format == Format::json)
        printJson(pair);
    else
        print(texts.text("cli.sync.added",
                         {{"name", printable(pair.title())}, {"id", pair.id.text().substr(0, 8)}}) +
              "\n");
    return Exit::done;
}

Exit removePair(Context& context, const std::string& word) {
    const Texts& texts = context.session.texts();
    const auto pair = findPair(context, word);
    if (!pair)
        return Exit::failed;
    const std::vector<TextArgument> name{{"name", printable(pair->title())}};
    if (const auto exit = unlessAgreed(context, texts.text("cli.sync.ask-remove", name)))
        return *exit;
    pairStore(context).change([&](std::vector<SyncPair>& pairs) {
        std::erase_if(pairs, [&](const SyncPair& each) { return each.id == pair->id; });
    });
    if (context.format == Format::json)
        printJson(*pair);
    else
        print(texts.text("cli.sync.removed", name) + "\n");
    return Exit::done;
}

} // namespace

void describeSyncPairs(Verb& noun, CommandLine& line) {
    line.on(noun.verb("pairs", line.text("cli.sync.pairs")), listPairs);

    const auto adding = std::make_shared<AddWords>();
    Verb& add = noun.verb("add", line.text("cli.sync.add"));
    adding->folders.addTo(add, line, true);
    add.option("--name", &adding->name, line.text("cli.sync.name")).valueName("NAME");
    add.option("--watch", &adding->watch, line.text("cli.sync.watches"));
    line.onChange(add, [adding](Context& context) { return addPair(context, *adding); });

    const auto removing = std::make_shared<std::string>();
    Verb& remove = noun.verb("remove", line.text("cli.sync.remove"));
    remove.argument("PAIR", removing.get(), line.text("cli.sync.pair")).required();
    line.onChange(remove, [removing](Context& context) { return removePair(context, *removing); });
}

} // namespace vh::cli

#include "Core/Csv.h"

#include "Automation/Automation.h"
#include "Core/LocalCalendar.h"
#include "Core/Printable.h"
#include "Tools/FolderSync/SyncRecord.h"
#include "Tools/FolderSync/command/SyncCommand.h"
#include "Tools/FolderSync/work/SyncRunner.h"
#include "Tools/FolderSync/work/SyncService.h"
#include "app/Session.h"
#include "cli/OwnLoop.h"
#include "cli/Reply.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

namespace vh {

namespace cli {

struct WatchLine {
    Date date;
    std::string pair, text;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::WatchLine> = record(field("date", &cli::WatchLine::date),
                                                        field("pair", &cli::WatchLine::pair),
                                                        field("text", &cli::WatchLine::text));

} // namespace vh

namespace vh::cli {

namespace {

using sync::SyncPair;
using sync::WatchState;

struct WatchWords {
    std::vector<std::string> pairs;
    bool off = false;
};

/// Says how watched pairs are, and what is done to them, as it changes.
class Watching {
public:
    /// With `chosen` empty: all that are watched.
    Watching(Context& context, std::vector<Uuid> chosen)
        : context_(context), texts_(context.session.texts()), chosen_(std::move(chosen)),
          own_(context.session), runner_(own_.automation().service<automation::SyncService>().runner()) {}

    void run();

private:
    bool isShown(const SyncPair& pair) const {
        return pair.watch && (chosen_.empty() || std::ranges::count(chosen_, pair.id) > 0);
    }
    void changed();
    void told(const SyncPair& pair, const std::map<Uuid, WatchState>& states);
    void ended(const RunRecord& record);
    void say(const std::string& pair, const std::string& text);

    Context& context_;
    const Texts& texts_;
    const std::vector<Uuid> chosen_;
    OwnLoop own_;
    automation::SyncRunner& runner_;
    std::map<Uuid, WatchState> states_;            ///< as they were said
    std::map<Uuid, std::optional<Date>> lastSync_; ///< as they were seen
    std::map<std::string, std::string> said_;      ///< of each pair, last
    std::optional<Uuid> running_;
    bool isEnding_ = false;
};

void Watching::run() {
    automation::Automation& automation = own_.automation();
    automation.setOnRecord([this](const RunRecord& record) { ended(record); });
    const auto observing = runner_.observe([this] { changed(); });
    automation.lead();
    if (!automation.trouble().empty())
        complain(automation.trouble());
    else if (!automation.isLeading())
        complain(texts_.text("cli.sync.watched-elsewhere"));
    changed();
    own_.run(context_.cancel, [this] {
        isEnding_ = true;
        runner_.stop();
        own_.loop().post([this] { changed(); });
    });
}

void Watching::changed() {
    const auto states = runner_.states();
    for (const SyncPair& pair : runner_.pairs())
        if (isShown(pair))
            told(pair, states);
    const auto& running = runner_.running();
    const auto now = running && running->total > 0 ? std::optional(running->pair) : std::nullopt;
    if (std::exchange(running_, now) != now && now)
        say(running->title, texts_.text("cli.sync.started", {{"count", running->total}}));
    if (isEnding_ && !running)
        own_.finish();
}

void Watching::told(const SyncPair& pair, const std::map<Uuid, WatchState>& states) {
    const auto state = states.find(pair.id);
    if (state != states.end()) {
        const auto [known, isNew] = states_.try_emplace(pair.id, state->second);
        const std::string text = state->second.isHealthy() ? texts_.text("sync-page.state.watching")
                                                           : textOf(state->second, pair, texts_);
        if ((isNew || known->second != state->second) && said_[pair.title()] != text)
            say(pair.title(), text);
        known->second = state->second;
    }
    const auto [known, isNew] = lastSync_.try_emplace(pair.id, pair.lastSync);
    if (!isNew && known->second != pair.lastSync && !own_.automation().isLeading())
        say(pair.title(), texts_.text("cli.sync.synced"));
    known->second = pair.lastSync;
}

void Watching::ended(const RunRecord& record) {
    if (record.toolID != sync::toolID)
        return;
    for (const SyncPair& pair : runner_.pairs())
        if (isShown(pair) && pair.source == record.detail(RunDetail::source) &&
            pair.destination == record.detail(RunDetail::destinations) &&
            (record.outcome == Outcome::success || said_[pair.title()] != record.summary))
            say(pair.title(), record.summary);
}

void Watching::say(const std::string& pair, const std::string& text) {
    said_.insert_or_assign(pair, text);
    const WatchLine line{systemNow(), pair, text};
    if (context_.format == Format::json)
        print(encodeJson(line) + "\n");
    else
        print(fmt::format("{}  {}: {}\n", timestamp(line.date, LocalCalendar()), printable(pair),
                          printable(text)));
    flush();
}

/// The pairs that are named, which are watched from then on, or no longer. Nothing when one is unknown.
std::optional<std::vector<Uuid>> switchNamed(Context& context, const WatchWords& words) {
    std::vector<Uuid> named;
    for (const std::string& word : words.pairs) {
        const auto pair = findPair(context, word);
        if (!pair)
            return std::nullopt;
        named.push_back(pair->id);
    }
    const auto isSwitched = [&](const SyncPair& each) {
        return std::ranges::count(named, each.id) > 0 && each.watch == words.off;
    };
    sync::SyncPairStore store = pairStore(context);
    if (std::ranges::any_of(store.load(), isSwitched))
        store.change([&](std::vector<SyncPair>& pairs) {
            for (SyncPair& each : pairs)
                if (isSwitched(each))
                    each.watch = !words.off;
        });
    return named;
}

Exit watchPairs(Context& context, const WatchWords& words) {
    const Texts& texts = context.session.texts();
    if (words.off && words.pairs.empty())
        throw UsageError(texts.text("cli.sync.what-off"));
    const auto named = switchNamed(context, words);
    if (!named)
        return Exit::failed;
    if (words.off)
        return Exit::done;
    if (std::ranges::none_of(pairStore(context).load(), &SyncPair::watch)) {
        complain(texts.text("cli.sync.none-watched"));
        return Exit::failed;
    }
    Watching(context, *named).run();
    return Exit::done;
}

} // namespace

void describeSyncWatch(Verb& noun, CommandLine& line) {
    const auto words = std::make_shared<WatchWords>();
    Verb& watch = noun.verb("watch", line.text("cli.sync.watch"));
    watch.argument("PAIR", &words->pairs, line.text("cli.sync.watch-pair"));
    watch.option("--off", &words->off, line.text("cli.sync.off"));
    line.onChange(watch, [words](Context& context) { return watchPairs(context, *words); });
}

} // namespace vh::cli

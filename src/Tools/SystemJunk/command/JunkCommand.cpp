#include "Core/ByteFormat.h"
#include "Core/CleanJob.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/SuiteModule.h"
#include "Tools/SystemJunk/command/JunkSelection.h"
#include "app/ModuleRegistry.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Consent.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <filesystem>

namespace vh {

namespace cli {

/// What a clean answers in JSON.
struct CleanReply {
    int64_t removedCount = 0;
    int64_t freedBytes = 0;
    std::vector<std::string> errors;
    std::vector<CleanedItem> items;
    std::optional<Uuid> runID; ///< unset when there was nothing to clean
    Outcome outcome = Outcome::success;
    std::string summary;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::CleanReply> =
    record(field("removedCount", &cli::CleanReply::removedCount),
           field("freedBytes", &cli::CleanReply::freedBytes), field("errors", &cli::CleanReply::errors),
           field("items", &cli::CleanReply::items), field("runID", &cli::CleanReply::runID),
           field("outcome", &cli::CleanReply::outcome), field("summary", &cli::CleanReply::summary));

} // namespace vh

namespace vh::cli {

namespace {

struct CleanOptions {
    JunkWords words;
    bool permanent = false;
};

std::shared_ptr<SuiteModule> junkModule(Context& context) {
    return context.session.registry().module("system-junk");
}

ScanReport scanReport(Context& context, SuiteModule& module) {
    ProgressLine line;
    return module.scan(line.control(context.cancel));
}

int64_t bytesOf(const std::vector<ScanItem>& items) {
    int64_t bytes = 0;
    for (const ScanItem& item : items)
        bytes += item.byteSize;
    return bytes;
}

void printItems(const std::vector<ScanItem>& items, const Texts& texts) {
    Table table({{texts.text("cli.column.size"), Align::right},
                 {texts.text("cli.column.category")},
                 {texts.text("cli.column.path"), Align::left, true}});
    for (const ScanItem& item : items)
        table.add({sizeText(item.byteSize, texts.language()), texts.text("scan.category." + item.category),
                   printable(item.path) +
                       (item.recency == Recency::settled ? "" : " (" + texts.text("cache.recent") + ")")});
    print(table.text(outputWidth()));
}

ScanReport offered(const ScanReport& report, bool isRecentWanted) {
    return isRecentWanted ? report : report.withoutShared();
}

Exit scanJunk(Context& context, bool isRecentWanted) {
    const auto module = junkModule(context);
    const ScanReport report = offered(scanReport(context, *module), isRecentWanted);
    if (context.format == Format::json) {
        printJson(report);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    if (!report.items.empty())
        printItems(report.items, texts);
    print(texts.text("cli.junk.total", {{"count", report.items.size()},
                                        {"size", sizeText(report.totalBytes(), texts.language())}}) +
          "\n");
    return Exit::done;
}

std::optional<Exit> unlessAgreed(Context& context, const CleanOptions& options,
                                 const std::vector<ScanItem>& items) {
    const Texts& texts = context.session.texts();
    const auto question =
        texts.text(options.permanent ? "cli.junk.ask-permanent" : "cli.junk.ask-trash",
                   {{"count", items.size()}, {"size", sizeText(bytesOf(items), texts.language())}});
    return unlessAgreed(context, question, [&] { printItems(items, texts); });
}

Exit printClean(const CleanJobResult& clean, Context& context) {
    const Texts& texts = context.session.texts();
    if (context.format == Format::json) {
        const CleanResult& result = clean.result;
        printJson(CleanReply{result.removedCount, result.freedBytes, result.errors, result.items,
                             clean.record.id, clean.record.outcome, clean.record.summary});
        return exitOf(clean.record.outcome);
    }
    print(clean.record.summary + "\n");
    for (const std::string& line : clean.skippedDetails)
        print("  " + printable(line) + "\n");
    if (!clean.trackingFailure.empty())
        complain(texts.text("cli.junk.untracked", {{"reason", clean.trackingFailure}}));
    const bool canBeUndone = std::ranges::any_of(
        clean.result.items, [](const CleanedItem& item) { return item.landed.has_value(); });
    if (canBeUndone)
        print(texts.text("cli.junk.undo-hint", {{"id", clean.record.id.text()}}) + "\n");
    return exitOf(clean.record.outcome);
}

Exit cleanJunk(Context& context, const CleanOptions& options) {
    const Texts& texts = context.session.texts();
    if (!options.words.all && options.words.categories.empty() && options.words.paths.empty()) {
        complain(texts.text("cli.junk.what"));
        return Exit::usage;
    }
    const auto module = junkModule(context);
    const ScanReport report = offered(scanReport(context, *module), options.words.recent);
    const auto folder = std::filesystem::current_path().native();
    const JunkSelection selection = selectJunk(report, options.words, folder);
    for (const std::string& word : selection.unmatched)
        complain(texts.text("cli.junk.unmatched", {{"word", printable(word)}}));
    if (!selection.unmatched.empty())
        return Exit::failed;
    if (selection.leftOut > 0)
        complain(texts.text("cli.junk.left-recent", {{"count", selection.leftOut}}));
    if (selection.items.empty()) {
        if (context.format == Format::json)
            printJson(CleanReply{.summary = texts.text("cli.junk.nothing")});
        else
            print(texts.text("cli.junk.nothing") + "\n");
        return Exit::done;
    }
    if (const auto exit = unlessAgreed(context, options, selection.items))
        return *exit;

    CleanSelection chosen{{}, options.permanent ? RemovalMethod::permanent : RemovalMethod::trash};
    for (const ScanItem& item : selection.items)
        chosen.itemIDs.insert(item.id);
    const auto clean = [&] {
        ProgressLine line;
        app::Session& session = context.session;
        return runClean(*module, report, chosen, Trigger::manual,
                        {session.runLog(), session.runFiles(), session.journals()}, texts,
                        line.control(context.cancel));
    }();
    return printClean(clean, context);
}

} // namespace

void describeJunk(Verb& noun, CommandLine& line) {
    Verb& scan = noun.verb("scan", line.text("cli.junk.scan"));
    auto isRecentWanted = std::make_shared<bool>(false);
    scan.option("--recent", isRecentWanted.get(), line.text("cli.junk.recent"));
    line.on(scan, [isRecentWanted](Context& context) { return scanJunk(context, *isRecentWanted); });

    auto options = std::make_shared<CleanOptions>();
    Verb& clean = noun.verb("clean", line.text("cli.junk.clean"));
    clean.option("--all", &options->words.all, line.text("cli.junk.all"));
    clean.option("--category", &options->words.categories, line.text("cli.junk.category"))
        .valueName("NAME")
        .many();
    clean.option("--path", &options->words.paths, line.text("cli.junk.path")).valueName("PATH").many();
    clean.option("--recent", &options->words.recent, line.text("cli.junk.recent"));
    clean.option("--permanent", &options->permanent, line.text("cli.junk.permanent"));
    line.onChange(clean, [options](Context& context) { return cleanJunk(context, *options); });
    noun.example("varnholt junk scan");
    noun.example("varnholt junk clean --category Caches Logs");
}

} // namespace vh::cli

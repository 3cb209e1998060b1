#include "Core/ActivityExport.h"
#include "Core/ByteFormat.h"
#include "Core/DatabaseKeep.h"
#include "Core/DatabaseLocation.h"
#include "Core/Printable.h"
#include "Core/RunJournal.h"
#include "Core/RunUndo.h"
#include "Features/Activity/command/RunFilterOptions.h"
#include "Features/Activity/command/RunsCommand.h"
#include "Platform/Files.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Consent.h"
#include "cli/Day.h"
#include "cli/Reply.h"

#include <filesystem>

namespace vh {

namespace cli {

/// What an undo answers in JSON.
struct UndoReply {
    Uuid runID; ///< of the undo itself
    Outcome outcome = Outcome::success;
    std::string summary;
    int64_t restoredCount = 0;
    int64_t restoredBytes = 0;
    std::vector<SkippedItem> skipped;
};

struct PruneReply {
    int64_t removedCount = 0;
};

struct LocationReply {
    std::string folder;
    std::string file;
    int64_t bytes = 0;
};

} // namespace cli

template <>
inline constexpr auto describe<SkippedItem> = record(field("path", &SkippedItem::path),
                                                     field("reason", &SkippedItem::reason));

template <>
inline constexpr auto describe<cli::UndoReply> = record(
    field("runID", &cli::UndoReply::runID), field("outcome", &cli::UndoReply::outcome),
    field("summary", &cli::UndoReply::summary), field("restoredCount", &cli::UndoReply::restoredCount),
    field("restoredBytes", &cli::UndoReply::restoredBytes), field("skipped", &cli::UndoReply::skipped));

template <>
inline constexpr auto describe<cli::PruneReply> = record(field("removedCount",
                                                               &cli::PruneReply::removedCount));

template <>
inline constexpr auto describe<cli::LocationReply> = record(field("folder", &cli::LocationReply::folder),
                                                            field("file", &cli::LocationReply::file),
                                                            field("bytes", &cli::LocationReply::bytes));

} // namespace vh

namespace vh::cli {

namespace {

constexpr unsigned exportMode = 0644;

struct ExportOptions {
    RunFilterOptions filter;
    std::string output;
};

struct MoveOptions {
    std::string folder;
};

struct PruneOptions {
    std::string before;
    std::string keep;
};

Exit undo(Context& context, const std::string& word) {
    const auto run = findRun(context, word);
    if (!run)
        return Exit::failed;
    app::Session& session = context.session;
    const auto result = [&] {
        ProgressLine line;
        return undoRun(run->id, Trigger::manual, {session.runLog(), session.runFiles(), session.journals()},
                       session.texts(), line.control(context.cancel));
    }();
    if (context.format == Format::json) {
        printJson(UndoReply{result.record.id, result.record.outcome, result.record.summary,
                            result.restoredCount, result.restoredBytes, result.skipped});
    } else {
        print(result.record.summary + "\n");
        for (const SkippedItem& item : result.skipped)
            print(fmt::format("  {} — {}\n", printable(item.path), item.reason));
    }
    return exitOf(result.record.outcome);
}

Exit exportRuns(Context& context, const ExportOptions& options) {
    const Texts& texts = context.session.texts();
    const auto runs =
        matchingRuns(context.session, options.filter.filter(LocalCalendar()), RunLog::defaultMaxRecords);
    const std::string csv =
        ActivityExport{texts, std::string(code(texts.language())), LocalCalendar()}.csv(runs);
    if (options.output.empty()) {
        print(csv);
        return Exit::done;
    }
    const std::string file = std::filesystem::absolute(options.output).native();
    if (const auto exit = unlessReplaceable(context, file))
        return *exit;
    writeFileAtomically(file, csv, exportMode);
    complain(texts.text("cli.runs.exported", {{"count", runs.size()}, {"path", printable(options.output)}}));
    return Exit::done;
}

/// What stays: as the words say, else as the setting does.
std::optional<Date> pruneDate(Context& context, const PruneOptions& options, std::string_view settingKey) {
    if (!options.before.empty())
        return parseDay(options.before, LocalCalendar());
    const auto word = options.keep.empty() ? context.session.defaults().get<std::string>(settingKey)
                                           : std::optional(options.keep);
    const auto keep = word ? fromRaw<Keep>(*word) : std::optional(Keep::always);
    if (!keep)
        throw UsageError(printable(*word) + ": days30|days90|months6|year|always");
    return cutoff(*keep, systemNow());
}

Exit prune(Context& context, const PruneOptions& options) {
    RunLog& log = context.session.runLog();
    const Texts& texts = context.session.texts();
    const auto before = pruneDate(context, options, keepRunsKey);
    const size_t kept = before ? log.since(*before).size() : log.all().size();
    const size_t count = log.all().size() - kept;
    if (count > 0)
        if (const auto exit = unlessAgreed(context, texts.text("cli.runs.ask-prune", {{"count", count}})))
            return *exit;
    log.prune(before, pruneDate(context, options, keepFilesKey));
    if (context.format == Format::json)
        printJson(PruneReply{static_cast<int64_t>(count)});
    else
        print(texts.text("cli.runs.pruned", {{"count", count}}) + "\n");
    return Exit::done;
}

Exit showLocation(Context& context) {
    const RunLog& log = context.session.runLog();
    const std::string folder = DatabaseLocation::folder(context.session.defaults());
    if (context.format == Format::json)
        printJson(LocationReply{folder, log.location(), log.bytes()});
    else
        print(fmt::format("{}  {}\n", printable(log.location()),
                          sizeText(log.bytes(), context.session.texts().language())));
    return Exit::done;
}

Exit moveDatabase(Context& context, const MoveOptions& options) {
    RunLog& log = context.session.runLog();
    const auto folder = std::filesystem::absolute(options.folder).lexically_normal().native();
    if (log.wouldReplace(folder))
        if (const auto exit = unlessReplaceable(context, folder + "/runs.jsonl"))
            return *exit;
    log.relocate(folder);
    return showLocation(context);
}

} // namespace

void describeRunsUpkeep(Verb& noun, CommandLine& line) {
    auto word = std::make_shared<std::string>();
    Verb& undoVerb = noun.verb("undo", line.text("cli.runs.undo"));
    undoVerb.argument("ID", word.get(), line.text("cli.runs.id")).required();
    line.onChange(undoVerb, [word](Context& context) { return undo(context, *word); });

    auto exportOptions = std::make_shared<ExportOptions>();
    Verb& exportVerb = noun.verb("export", line.text("cli.runs.export"));
    exportOptions->filter.addTo(exportVerb, line);
    exportVerb.option("--output", &exportOptions->output, line.text("cli.runs.output"))
        .shortly('o')
        .valueName("FILE");
    line.asks(exportVerb);
    line.on(exportVerb, [exportOptions](Context& context) { return exportRuns(context, *exportOptions); });

    auto pruneOptions = std::make_shared<PruneOptions>();
    Verb& pruneVerb = noun.verb("prune", line.text("cli.runs.prune"));
    Option& before = pruneVerb.option("--before", &pruneOptions->before, line.text("cli.runs.before"))
                         .valueName("YYYY-MM-DD");
    pruneVerb.option("--keep", &pruneOptions->keep, line.text("cli.runs.keep"))
        .oneOf({"days30", "days90", "months6", "year", "always"})
        .notWith(before);
    line.onChange(pruneVerb, [pruneOptions](Context& context) { return prune(context, *pruneOptions); });

    line.on(noun.verb("location", line.text("cli.runs.location")), showLocation);

    auto moveOptions = std::make_shared<MoveOptions>();
    Verb& move = noun.verb("move", line.text("cli.runs.move"));
    move.argument("FOLDER", &moveOptions->folder, line.text("cli.runs.folder")).required();
    line.onChange(move, [moveOptions](Context& context) { return moveDatabase(context, *moveOptions); });
}

} // namespace vh::cli

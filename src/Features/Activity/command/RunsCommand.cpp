#include "Features/Activity/command/RunsCommand.h"

#include "Core/Csv.h"
#include "Core/Printable.h"
#include "Core/RunReportDocument.h"
#include "Core/ToolTexts.h"
#include "Features/Activity/command/RunFilterOptions.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/NamedThing.h"
#include "cli/Reply.h"
#include "cli/RunTable.h"
#include "cli/Table.h"

namespace vh {

namespace cli {

/// One run with all that it touched.
struct RunReply {
    RunRecord record;
    std::vector<RunFileRow> files;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::RunReply> = record(field("record", &cli::RunReply::record),
                                                       field("files", &cli::RunReply::files));

} // namespace vh

namespace vh::cli {

namespace {

constexpr int mostListed = 1'000'000;

struct ListOptions {
    RunFilterOptions filter;
    int limit = 30;
};

Exit listRuns(Context& context, const ListOptions& options) {
    const size_t limit = options.limit > 0 ? static_cast<size_t>(options.limit) : RunLog::defaultMaxRecords;
    auto runs = matchingRuns(context.session, options.filter.filter(LocalCalendar()), limit + 1);
    const bool isCut = runs.size() > limit;
    runs.resize(std::min(runs.size(), limit));
    if (context.format == Format::json) {
        printJson(runs);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    if (runs.empty()) {
        print(texts.text("cli.runs.none") + "\n");
        return Exit::done;
    }
    printRuns(runs, texts);
    if (isCut)
        print(texts.text("cli.runs.more") + "\n");
    return Exit::done;
}

void printReport(const RunReportDocument& report) {
    print(fmt::format("{}  {}\n{}\n\n", report.title, report.identity, report.meta));
    for (const auto& [label, value] : report.facts) {
        const auto lines = splitList(value);
        print(label + (lines.size() > 1 ? ":\n" : ": "));
        for (const std::string& line : lines)
            print((lines.size() > 1 ? "  " : "") + printable(line) + "\n");
    }
    for (const auto& total : report.totals)
        print(fmt::format("{}: {}\n", total.label, total.value));
    std::vector<Column> columns;
    for (size_t i = 0; i < report.columns.size(); ++i)
        columns.push_back({report.columns[i], report.numeric.contains(i) ? Align::right : Align::left,
                           !report.numeric.contains(i)});
    Table table(std::move(columns));
    for (const auto& line : report.lines)
        table.add(line.cells);
    if (!table.isEmpty())
        print("\n" + table.text(outputWidth()));
}

Exit showRun(Context& context, const std::string& word) {
    const auto run = findRun(context, word);
    if (!run)
        return Exit::failed;
    const auto files = context.session.runFiles().rows(run->id);
    if (context.format == Format::json) {
        printJson(RunReply{*run, files});
        return Exit::done;
    }
    printReport(RunReportDocument::of(*run, files, context.session.texts(), LocalCalendar()));
    return Exit::done;
}

} // namespace

std::optional<RunRecord> findRun(Context& context, const std::string& word) {
    return findNamed(context, context.session.runLog().all(), word,
                     {"cli.runs.unknown", "cli.runs.ambiguous"});
}

void describeRuns(Verb& noun, CommandLine& line) {
    auto options = std::make_shared<ListOptions>();
    Verb& list = noun.verb("list", line.text("cli.runs.list"));
    options->filter.addTo(list, line);
    list.option("--limit", &options->limit, line.text("cli.runs.limit")).valueName("N").range(0, mostListed);
    line.on(list, [options](Context& context) { return listRuns(context, *options); });

    auto word = std::make_shared<std::string>();
    Verb& show = noun.verb("show", line.text("cli.runs.show"));
    show.argument("ID", word.get(), line.text("cli.runs.id")).required();
    line.on(show, [word](Context& context) { return showRun(context, *word); });

    describeRunsReport(noun, line);
    describeRunsUpkeep(noun, line);
    noun.example("varnholt runs list --tool system-junk --period 7");
    noun.example("varnholt runs undo 0B5F6A0E");
    noun.example("varnholt runs report 0B5F6A0E --format pdf -o report.pdf");
}

} // namespace vh::cli

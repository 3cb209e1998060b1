#include "Automation/RunReportFile.h"
#include "Core/Printable.h"
#include "Features/Activity/command/RunsCommand.h"
#include "Platform/Files.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Consent.h"
#include "cli/Reply.h"

#include <filesystem>

namespace vh::cli {

namespace {

constexpr unsigned reportMode = 0644;

struct ReportOptions {
    std::string word;
    std::string format = "pdf";
    std::string output;
};

Exit writeReport(Context& context, const ReportOptions& options) {
    const Texts& texts = context.session.texts();
    const auto format = *fromRaw<automation::ReportFormat>(options.format);
    const auto run = findRun(context, options.word);
    if (!run)
        return Exit::failed;
    const auto report = automation::reportFileOf(*run, context.session.runFiles().rows(run->id), format,
                                                 texts, LocalCalendar());
    const std::string file =
        std::filesystem::absolute(options.output.empty() ? report.name : options.output).native();
    if (const auto exit = unlessReplaceable(context, file))
        return *exit;
    writeFileAtomically(file, report.bytes, reportMode);
    complain(texts.text("cli.runs.reported", {{"path", printable(file)}}));
    return Exit::done;
}

} // namespace

void describeRunsReport(Verb& noun, CommandLine& line) {
    auto options = std::make_shared<ReportOptions>();
    Verb& report = noun.verb("report", line.text("cli.runs.report"));
    report.argument("ID", &options->word, line.text("cli.runs.id")).required();
    report.option("--format", &options->format, line.text("cli.runs.report-format")).oneOf({"pdf", "csv"});
    report.option("--output", &options->output, line.text("cli.runs.output")).shortly('o').valueName("FILE");
    line.asks(report);
    line.on(report, [options](Context& context) { return writeReport(context, *options); });
}

} // namespace vh::cli

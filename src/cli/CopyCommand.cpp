#include "Core/Printable.h"
#include "Core/RunHandle.h"
#include "Core/RunLog.h"
#include "Tools/FastCopy/CopyError.h"
#include "Tools/FastCopy/CopyRecord.h"
#include "Tools/FastCopy/FastCopier.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/CopyBars.h"
#include "cli/Reply.h"

#include <filesystem>

namespace vh::cli {

namespace {

using namespace vh::copy;

struct CopyWords {
    std::vector<std::string> sources, destinations;
    std::string conflict = "skip";
    std::string algorithm = "sha256";
    bool clone = false;
    bool verify = false;
    bool noMetadata = false;
};

std::vector<std::string> absolutePaths(const std::vector<std::string>& paths) {
    std::vector<std::string> all;
    for (const std::string& each : paths)
        all.push_back(std::filesystem::absolute(each).lexically_normal().string());
    return all;
}

CopyOptions optionsOf(const CopyWords& words) {
    CopyOptions options;
    options.mode = words.clone ? CopyMode::clone : CopyMode::copy;
    options.conflict = *fromRaw<CopyConflict>(words.conflict);
    options.algorithm = *fromRaw<HashAlgorithm>(words.algorithm);
    options.verify = words.verify;
    options.preserveMetadata = !words.noMetadata;
    return options;
}

Exit copyFiles(Context& context, const CopyWords& words) {
    const Texts& texts = context.session.texts();
    const auto sources = absolutePaths(words.sources), destinations = absolutePaths(words.destinations);
    const auto run =
        context.session.runLog().begin(toolID, Trigger::manual, detailsOf(sources, destinations));
    const auto control = std::make_shared<CopyControl>();
    CopyReport report;
    try {
        CopyBars bars(destinations, texts);
        report = FastCopier(control).copy(
            sources, destinations, optionsOf(words),
            [&](const CopyProgress& progress) {
                if (context.cancel.isCancelled())
                    control->cancel();
                if (context.format == Format::people)
                    bars.show(progress);
            },
            context.cancel);
    } catch (const CopyError& error) {
        complain(printable(error.what()));
        run->finish(Outcome::failed, printable(error.what()), {{RunMetric::errors, 1}});
        return Exit::failed;
    }
    const RunRecord record = finishRun(*run, report, texts);
    if (context.format == Format::json) {
        printJson(report);
        return exitOf(record.outcome);
    }
    for (const std::string& problem : report.problems())
        complain(printable(problem));
    print(record.summary + "\n");
    return exitOf(record.outcome);
}

} // namespace

void describeCopy(CLI::App& noun, CommandLine& line) {
    const auto words = std::make_shared<CopyWords>();
    noun.add_option("SOURCE", words->sources, line.text("cli.copy.source"))->required();
    noun.add_option("--to", words->destinations, line.text("cli.copy.to"))->type_name("FOLDER")->required();
    noun.add_flag("--clone", words->clone, line.text("cli.copy.clone"));
    noun.add_option("--conflict", words->conflict, line.text("cli.copy.conflict"))
        ->check(CLI::IsMember({"skip", "overwrite", "rename"}));
    noun.add_flag("--verify", words->verify, line.text("cli.copy.verify"));
    noun.add_option("--algorithm", words->algorithm, line.text("cli.copy.algorithm"))
        ->check(CLI::IsMember({"sha256", "xxhash64", "md5"}));
    noun.add_flag("--no-metadata", words->noMetadata, line.text("cli.copy.no-metadata"));
    line.onChange(&noun, [words](Context& context) { return copyFiles(context, *words); });
}

} // namespace vh::cli

#include "Core/CleanJob.h"
#include "Core/Printable.h"
#include "Tools/FastCopy/CopyWork.h"
#include "Tools/FastCopy/command/CopyBars.h"
#include "Tools/FastCopy/command/CopyVerifyCommand.h"
#include "Tools/FastCopy/command/DiskCopyCommand.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Reply.h"

#include <algorithm>

namespace vh::cli {

namespace {

using namespace vh::copy;

struct CopyWords {
    std::vector<std::string> sources, destinations;
    std::string conflict = "skip";
    std::string algorithm = "sha256";
    std::string manifest;
    bool clone = false;
    bool verify = false;
    bool noMetadata = false;
    bool unmount = false;
    bool create = false;
    bool links = false;
};

std::vector<std::string> absolutePaths(std::vector<std::string> paths) {
    for (std::string& each : paths)
        each = absolutePath(each);
    return paths;
}

CopyOptions optionsOf(const CopyWords& words) {
    CopyOptions options;
    options.mode = words.clone ? CopyMode::clone : CopyMode::copy;
    options.conflict = *fromRaw<CopyConflict>(words.conflict);
    options.algorithm = *fromRaw<HashAlgorithm>(words.algorithm);
    options.verify = words.verify;
    options.preserveMetadata = !words.noMetadata;
    options.createDestinations = words.create;
    options.links = words.links ? CopyLinks::asLinks : CopyLinks::leaveOut;
    return options;
}

CopyResult runWithBars(Context& context, const CopyRequest& request) {
    app::Session& session = context.session;
    CopyBars bars(request.destinations, session.texts());
    return runCopy(
        request, copyStateFolder(session.folders()), session.runStores(), session.texts(),
        std::make_shared<CopyControl>(), [&](const CopyProgress& progress) { bars.show(progress); },
        context.cancel);
}

/// The words as a copy of files, or of one disk.
CopyRequest requestOf(const CopyWords& words, const Texts& texts) {
    const auto isMissing = [](const std::vector<std::string>& paths) {
        return paths.empty() || std::ranges::find(paths, "") != paths.end();
    };
    if (isMissing(words.sources) || isMissing(words.destinations))
        throw UsageError(texts.text("cli.copy.what-and-where"));
    CopyRequest request{absolutePaths(words.sources), absolutePaths(words.destinations), optionsOf(words)};
    if (!words.manifest.empty())
        request.manifest = fromRaw<ManifestKind>(words.manifest);
    const bool isDisk = holdsDisk(request.sources);
    if (isDisk && request.manifest)
        throw UsageError(texts.text("cli.copy.disk-manifest"));
    if (!isDisk && words.unmount)
        throw UsageError(texts.text("cli.copy.unmount-disk"));
    return request;
}

Exit copyFiles(Context& context, const CopyWords& words) {
    const Texts& texts = context.session.texts();
    const CopyRequest request = requestOf(words, texts);
    if (holdsDisk(request.sources))
        return copyDisk(context, request.sources, request.destinations, request.options, words.unmount);
    const CopyResult result = runWithBars(context, request);
    if (!result.error.empty())
        complain(printable(result.error));
    if (result.isDestinationMissing)
        complain(texts.text("cli.copy.create-hint"));
    if (!result.trackingFailure.empty())
        complain(texts.text("cli.copy.untracked", {{"reason", printable(result.trackingFailure)}}));
    if (context.format == Format::json) {
        printJson(result.report);
        return exitOf(result.record.outcome);
    }
    if (!result.error.empty())
        return exitOf(result.record.outcome);
    for (const Message& problem : result.report.problems())
        complain(worded(problem, texts));
    print(result.record.summary + "\n");
    for (const std::string& manifest : result.manifests)
        print(texts.text("cli.copy.listed", {{"path", printable(manifest)}}) + "\n");
    return exitOf(result.record.outcome);
}

} // namespace

void describeCopy(Verb& noun, CommandLine& line) {
    const auto words = std::make_shared<CopyWords>();
    noun.argument("SOURCE", &words->sources, line.text("cli.copy.source"));
    noun.option("--to", &words->destinations, line.text("cli.copy.to")).valueName("FOLDER").many();
    noun.option("--clone", &words->clone, line.text("cli.copy.clone"));
    noun.option("--conflict", &words->conflict, line.text("cli.copy.conflict"))
        .oneOf({"skip", "overwrite", "rename"});
    noun.option("--verify", &words->verify, line.text("cli.copy.verify"));
    noun.option("--algorithm", &words->algorithm, line.text("cli.copy.algorithm"))
        .oneOf({"sha256", "xxhash64", "md5"});
    noun.option("--no-metadata", &words->noMetadata, line.text("cli.copy.no-metadata"));
    noun.option("--links", &words->links, line.text("cli.copy.links"));
    noun.option("--manifest", &words->manifest, line.text("cli.copy.manifest")).oneOf({"sums", "mhl"});
    noun.option("--create", &words->create, line.text("cli.copy.create"));
    noun.option("--unmount", &words->unmount, line.text("cli.copy.unmount"));
    line.onChange(noun, [words](Context& context) { return copyFiles(context, *words); });
    const auto hasWords = [words] {
        return !words->sources.empty() || !words->destinations.empty();
    };
    describeCopyVerify(noun, line, hasWords);
    describeDisks(noun, line, hasWords);
    noun.example("varnholt copy Photos --to /media/one /media/two --verify");
    noun.example("varnholt copy Photos --to /media/one --manifest sums");
}

} // namespace vh::cli

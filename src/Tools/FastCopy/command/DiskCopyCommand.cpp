#include "Tools/FastCopy/command/DiskCopyCommand.h"

#include "Core/ByteFormat.h"
#include "Core/Printable.h"
#include "Tools/FastCopy/command/CopyBars.h"
#include "Tools/FastCopy/work/DiskCopy.h"
#include "app/Session.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fmt/format.h>

namespace vh {

namespace cli {

struct ImageReply {
    std::string image; ///< empty when nothing was begun
    std::string sha256;
    int64_t badBlocks = 0;
    Outcome outcome = Outcome::success;
    std::string summary;
    std::optional<copy::CopyReport> copies; ///< of the image
    Uuid runID;
};

} // namespace cli

template <>
inline constexpr auto describe<DiskFacts> =
    record(field("bsdName", &DiskFacts::bsdName), field("device", &DiskFacts::device),
           field("name", &DiskFacts::name), field("bytes", &DiskFacts::bytes),
           field("isMounted", &DiskFacts::isMounted), field("isRemovable", &DiskFacts::isRemovable),
           field("holdsSystem", &DiskFacts::holdsSystem), field("mountPoints", &DiskFacts::mountPoints),
           field("users", &DiskFacts::users), field("parts", &DiskFacts::parts));

template <>
inline constexpr auto describe<cli::ImageReply> = record(field("image", &cli::ImageReply::image),
                                                         field("sha256", &cli::ImageReply::sha256),
                                                         field("badBlocks", &cli::ImageReply::badBlocks),
                                                         field("outcome", &cli::ImageReply::outcome),
                                                         field("summary", &cli::ImageReply::summary),
                                                         field("copies", &cli::ImageReply::copies),
                                                         field("runID", &cli::ImageReply::runID));

} // namespace vh

namespace vh::cli {

namespace {

using automation::DiskCopyProgress;
using automation::DiskCopyResult;
using copy::CopyProgress;

std::string useOf(const DiskFacts& disk, const Texts& texts) {
    std::vector<std::string> uses;
    if (disk.holdsSystem)
        uses.push_back(texts.text("cli.copy.disk-of-system"));
    for (const std::string& path : disk.mountPoints)
        uses.push_back(printable(path));
    uses.insert(uses.end(), disk.users.begin(), disk.users.end());
    return fmt::format("{}", fmt::join(uses, ", "));
}

Exit listDisks(Context& context) {
    const Texts& texts = context.session.texts();
    const auto disks = wholeDisks();
    if (context.format == Format::json) {
        printJson(disks);
        return Exit::done;
    }
    Table table({{texts.text("cli.column.disk")},
                 {texts.text("cli.column.name")},
                 {texts.text("cli.column.size"), Align::right},
                 {texts.text("cli.copy.column.in-use"), Align::left, true}});
    for (const DiskFacts& disk : disks)
        table.add(
            {disk.device, printable(disk.name), sizeText(disk.bytes, texts.language()), useOf(disk, texts)});
    print(table.text(outputWidth()));
    return Exit::done;
}

DiskFacts diskAt(const std::string& source, const Texts& texts) {
    const std::string device = std::filesystem::canonical(source).string();
    for (const DiskFacts& disk : wholeDisks()) {
        if (disk.device == device)
            return disk;
        if (std::ranges::find(disk.parts, device) != disk.parts.end())
            throw UsageError(
                texts.text("cli.copy.part-of-disk", {{"device", printable(source)}, {"disk", disk.device}}));
    }
    throw UsageError(texts.text("cli.copy.no-disk", {{"device", printable(source)}}));
}

/// The image as a copy that so far goes to the first place alone.
class ImageProgress {
public:
    explicit ImageProgress(size_t destinations) : destinations_(destinations) {}

    CopyProgress of(const DiskCopyProgress& progress) const {
        CopyProgress shown;
        if (progress.further) {
            shown = *progress.further;
            if (!shown.destinationBytes.empty())
                shown.destinationBytes.front() = shown.bytesPerDestination;
            return shown;
        }
        const double elapsed =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
        const auto left = static_cast<double>(progress.image.bytesTotal - progress.image.bytesDone);
        shown.bytesPerDestination = progress.image.bytesTotal;
        shown.destinationBytes.assign(destinations_, 0);
        shown.destinationBytes.front() = progress.image.bytesDone;
        shown.bytesPerSecond =
            static_cast<double>(progress.image.bytesDone) / std::max(elapsed, leastSeconds);
        if (elapsed > secondsBeforeGuess && shown.bytesPerSecond > 0)
            shown.secondsRemaining = left / shown.bytesPerSecond;
        return shown;
    }

private:
    static constexpr double leastSeconds = 0.001, secondsBeforeGuess = 3;
    size_t destinations_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

DiskCopyResult run(Context& context, const automation::DiskCopyRequest& request) {
    app::Session& session = context.session;
    CopyBars bars(request.destinations, session.texts());
    const ImageProgress image(request.destinations.size());
    return automation::runDiskCopy(
        request, automation::DeviceJobs::of(session.helper()), session.folders(), session.runStores(),
        session.texts(), std::make_shared<copy::CopyControl>(),
        [&](const DiskCopyProgress& progress) { bars.show(image.of(progress)); }, context.cancel);
}

} // namespace

void describeDisks(Verb& copy, CommandLine& line, std::function<bool()> hasWords) {
    line.on(copy.verb("disks", line.text("cli.copy.disks")),
            [hasWords = std::move(hasWords)](Context& context) {
                if (hasWords())
                    throw UsageError(context.session.texts().text("cli.copy.disks-or-copy"));
                return listDisks(context);
            });
}

bool holdsDisk(const std::vector<std::string>& sources) {
    return std::ranges::any_of(sources, [](const std::string& each) {
        std::error_code error;
        return std::filesystem::is_block_file(each, error);
    });
}

Exit copyDisk(Context& context, const std::vector<std::string>& sources,
              const std::vector<std::string>& destinations, const copy::CopyOptions& options, bool unmount) {
    const Texts& texts = context.session.texts();
    if (sources.size() != 1)
        throw UsageError(texts.text("cli.copy.disk-alone"));
    const DiskFacts disk = diskAt(sources.front(), texts);
    const DiskCopyResult result =
        run(context, {automation::sourceOf(disk), destinations, options, unmount, Trigger::manual});
    if (context.format == Format::json) {
        printJson(ImageReply{result.imagePath, result.sha256, result.badBlocks, result.record.outcome,
                             result.record.summary, result.further, result.record.id});
        return exitOf(result.record.outcome);
    }
    if (result.end == DiskCopyResult::End::failed) {
        complain(result.message);
        return Exit::failed;
    }
    for (const std::string& problem : splitList(result.record.detail(RunDetail::errors).value_or("")))
        complain(problem);
    print(result.record.summary + "\n");
    return exitOf(result.record.outcome);
}

} // namespace vh::cli

#include "Core/ByteFormat.h"
#include "Core/Codec.h"
#include "Core/Printable.h"
#include "Core/SuiteModule.h"
#include "Core/VolumeTitle.h"
#include "Platform/Host.h"
#include "Platform/Volumes.h"
#include "app/ModuleRegistry.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Reply.h"
#include "cli/RunTable.h"
#include "cli/Table.h"

namespace vh {

namespace cli {

struct JunkCategory {
    std::string category;
    int64_t items = 0;
    int64_t byteSize = 0;
};

/// What the machine looks like now.
struct Overview {
    std::string computer;
    std::string system;
    std::vector<Volume> disks;
    std::vector<JunkCategory> junk;
    std::vector<RunRecord> runs;
};

} // namespace cli

template <>
inline constexpr auto
    describe<Volume> = record(field("name", &Volume::name), field("path", &Volume::path),
                              field("device", &Volume::device), field("fileSystem", &Volume::fileSystem),
                              field("totalBytes", &Volume::totalBytes),
                              field("freeBytes", &Volume::freeBytes), field("readOnly", &Volume::readOnly));

template <>
inline constexpr auto describe<cli::JunkCategory> = record(field("category", &cli::JunkCategory::category),
                                                           field("items", &cli::JunkCategory::items),
                                                           field("byteSize", &cli::JunkCategory::byteSize));

template <>
inline constexpr auto describe<cli::Overview> = record(field("computer", &cli::Overview::computer),
                                                       field("system", &cli::Overview::system),
                                                       field("disks", &cli::Overview::disks),
                                                       field("junk", &cli::Overview::junk),
                                                       field("runs", &cli::Overview::runs));

} // namespace vh

namespace vh::cli {

namespace {

constexpr size_t shownRuns = 5;

/// Sums by category, in the order in which categories first appear.
std::vector<JunkCategory> byCategory(const ScanReport& report) {
    std::vector<JunkCategory> categories;
    for (const ScanItem& item : report.items) {
        auto found = std::ranges::find(categories, item.category, &JunkCategory::category);
        if (found == categories.end())
            found = categories.insert(found, JunkCategory{item.category});
        ++found->items;
        found->byteSize += item.byteSize;
    }
    return categories;
}

Overview look(Context& context) {
    app::Session& session = context.session;
    ProgressLine line;
    const ScanReport report =
        session.registry().module("system-junk")->scan(line.control(context.cancel)).settled();
    return {RunLog::thisComputer(), systemName(), mountedVolumes(), byCategory(report),
            session.runLog().recent(shownRuns)};
}

std::string diskTable(const std::vector<Volume>& disks, const Texts& texts) {
    Table table({{texts.text("cli.column.disk")},
                 {texts.text("cli.column.used"), Align::right},
                 {texts.text("cli.column.free"), Align::right},
                 {texts.text("cli.column.total"), Align::right},
                 {texts.text("cli.column.path"), Align::left, true}});
    for (const Volume& disk : disks)
        table.add({volumeTitle(texts, disk),
                   sizeText(static_cast<int64_t>(disk.totalBytes - disk.freeBytes), texts.language()),
                   sizeText(static_cast<int64_t>(disk.freeBytes), texts.language()),
                   sizeText(static_cast<int64_t>(disk.totalBytes), texts.language()), printable(disk.path)});
    return table.text(outputWidth());
}

std::string junkTable(const std::vector<JunkCategory>& junk, const Texts& texts) {
    Table table({{texts.text("cli.column.category")},
                 {texts.text("cli.column.items"), Align::right},
                 {texts.text("cli.column.size"), Align::right}});
    for (const JunkCategory& category : junk)
        table.add({texts.text("scan.category." + category.category), std::to_string(category.items),
                   sizeText(category.byteSize, texts.language())});
    return table.text(0);
}

Exit showOverview(Context& context) {
    const Overview overview = look(context);
    if (context.format == Format::json) {
        printJson(overview);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    print(fmt::format(
        "{} · {} · {}\n\n", printable(overview.computer), overview.system,
        texts.text("cli.overview.uptime",
                   {{"duration", durationText(static_cast<double>(uptime().count()), texts.language())}})));
    print(diskTable(overview.disks, texts) + "\n");
    print(overview.junk.empty() ? texts.text("cli.junk.nothing") + "\n" : junkTable(overview.junk, texts));
    print("\n");
    if (overview.runs.empty())
        print(texts.text("cli.runs.none") + "\n");
    else
        printRuns(overview.runs, texts);
    return Exit::done;
}

} // namespace

void describeOverview(Verb& noun, CommandLine& line) {
    line.on(noun, showOverview);
}

} // namespace vh::cli

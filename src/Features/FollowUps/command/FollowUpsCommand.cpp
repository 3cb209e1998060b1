#include "Core/MailAddress.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Core/ToolCatalog.h"
#include "Core/ToolTexts.h"
#include "Features/FollowUps/work/FollowUpsService.h"
#include "Features/FollowUps/work/RunFollowUps.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/OwnLoop.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <algorithm>
#include <fmt/format.h>

namespace vh {

namespace cli {

struct FollowUpsReply {
    std::string toolID;
    automation::FollowUpWishes wishes;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::FollowUpsReply> = record(field("toolID", &cli::FollowUpsReply::toolID),
                                                             field("wishes", &cli::FollowUpsReply::wishes));

} // namespace vh

namespace vh::cli {

namespace {

using automation::FollowUpWishes;
using automation::ReportFormat;

struct WishOptions {
    std::string tool;
    std::vector<std::string> recipients;
    std::string report;
};

/// What leaves runs and may have wishes: the tools, and flows.
std::vector<std::string> toolsWithRuns() {
    std::vector<std::string> ids;
    for (const ToolDescriptor& tool : ToolCatalog::all())
        ids.emplace_back(tool.id);
    ids.emplace_back("nodes");
    return ids;
}

std::string checkedTool(const std::string& word, const Texts& texts) {
    const auto ids = toolsWithRuns();
    if (std::ranges::find(ids, word) == ids.end())
        throw UsageError(texts.text("cli.follow-ups.unknown-tool", {{"tool", printable(word)}}));
    return word;
}

FollowUpWishes wishesOf(const WishOptions& options, const Texts& texts) {
    FollowUpWishes wishes;
    wishes.recipients = options.recipients;
    for (const std::string& address : wishes.recipients)
        if (!MailAddress::isValid(address))
            throw UsageError(texts.text("cli.follow-ups.bad-address", {{"address", printable(address)}}));
    if (!options.report.empty())
        wishes.report = fromRaw<ReportFormat>(options.report);
    if (wishes.isEmpty())
        throw UsageError(texts.text("cli.follow-ups.what"));
    return wishes;
}

Exit list(Context& context) {
    OwnLoop own(context.session);
    std::vector<FollowUpsReply> all;
    for (const std::string& id : toolsWithRuns())
        if (const auto wishes =
                own.automation().service<automation::FollowUpsService>().followUps().wishes(id);
            !wishes.isEmpty())
            all.push_back({id, wishes});
    if (context.format == Format::json) {
        printJson(all);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    if (all.empty()) {
        print(texts.text("cli.follow-ups.none") + "\n");
        return Exit::done;
    }
    Table table({{texts.text("cli.column.tool")},
                 {texts.text("cli.column.report")},
                 {texts.text("cli.column.recipients"), Align::left, true}});
    for (const FollowUpsReply& each : all)
        table.add({toolName(texts, each.toolID),
                   each.wishes.report ? std::string(rawValue(*each.wishes.report)) : "",
                   fmt::format("{}", fmt::join(each.wishes.recipients, ", "))});
    print(table.text(outputWidth()));
    return Exit::done;
}

Exit store(Context& context, const std::string& tool, const FollowUpWishes& wishes) {
    const Texts& texts = context.session.texts();
    OwnLoop own(context.session);
    own.automation().service<automation::FollowUpsService>().followUps().setWishes(tool, wishes);
    if (context.format == Format::json)
        printJson(FollowUpsReply{tool, wishes});
    else
        print(texts.text(wishes.isEmpty() ? "cli.follow-ups.cleared" : "cli.follow-ups.stored",
                         {{"tool", toolName(texts, tool)}}) +
              "\n");
    return Exit::done;
}

} // namespace

void describeFollowUps(Verb& noun, CommandLine& line) {
    line.on(noun.verb("list", line.text("cli.follow-ups.list")), list);

    auto options = std::make_shared<WishOptions>();
    Verb& set = noun.verb("set", line.text("cli.follow-ups.set"));
    set.argument("TOOL", &options->tool, line.text("cli.follow-ups.tool")).required();
    set.option("--mail", &options->recipients, line.text("cli.follow-ups.mail")).valueName("ADDRESS");
    set.option("--report", &options->report, line.text("cli.follow-ups.report")).oneOf({"pdf", "csv"});
    line.onChange(set, [options](Context& context) {
        const Texts& texts = context.session.texts();
        return store(context, checkedTool(options->tool, texts), wishesOf(*options, texts));
    });

    Verb& clear = noun.verb("clear", line.text("cli.follow-ups.clear"));
    clear.argument("TOOL", &options->tool, line.text("cli.follow-ups.tool")).required();
    line.onChange(clear, [options](Context& context) {
        return store(context, checkedTool(options->tool, context.session.texts()), {});
    });
    noun.example("varnholt follow-ups set system-junk --report pdf --mail ana@example.org");
}

} // namespace vh::cli

#include "Core/Csv.h"

#include "Automation/Automation.h"
#include "Core/Printable.h"
#include "Features/Flows/FlowTexts.h"
#include "Features/Flows/command/FlowShelf.h"
#include "Features/Flows/work/FlowsService.h"
#include "Features/Flows/work/NodesRunner.h"
#include "app/Session.h"
#include "cli/NamedThing.h"
#include "cli/OwnLoop.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <filesystem>

namespace vh {
template <>
inline constexpr auto
    describe<automation::FlowPlanLine> = record(field("node", &automation::FlowPlanLine::node),
                                                field("title", &automation::FlowPlanLine::title),
                                                field("text", &automation::FlowPlanLine::text));
} // namespace vh

namespace vh::cli {

namespace {

using namespace flows;

struct RunOptions {
    std::string word;
    bool isDry = false;
    std::string resume;
    std::vector<std::string> files;
    std::string folder;
    std::string disk;
};

/// What an event would tell a flow that is run by hand instead. Paths may be relative.
FlowValues valuesOf(const RunOptions& options) {
    const auto absolute = [](const std::string& path) {
        return std::filesystem::absolute(path).lexically_normal().native();
    };
    FlowValues values;
    for (const std::string& file : options.files)
        values.files.emplace(values.files.value_or(std::vector<std::string>())).push_back(absolute(file));
    if (!options.folder.empty())
        values.folder = absolute(options.folder);
    if (!options.disk.empty()) {
        values.disk = absolute(options.disk);
        values.diskName = std::filesystem::path(*values.disk).filename();
    }
    return values;
}

bool isWork(const FlowNode& node) {
    return !std::holds_alternative<StartNode>(node.kind) && !std::holds_alternative<ComputerNode>(node.kind);
}

/// Says once of each node that it begins, and how it ended.
class Follower {
public:
    Follower(const Flow& flow, const Texts& texts) : flow_(flow), texts_(texts) {}

    void look(const std::map<Uuid, FlowNodeState>& states) {
        for (const FlowNode& node : flow_.nodes)
            if (const auto now = states.find(node.id); now != states.end() && isWork(node))
                say(node, now->second);
        flush();
    }

private:
    void say(const FlowNode& node, const FlowNodeState& state) {
        const auto before = said_.find(node.id);
        if (before != said_.end() && before->second == state.index())
            return;
        said_[node.id] = state.index();
        const std::string title = titleOf(node, texts_);
        const auto* result = std::get_if<FlowNodeResult>(&state);
        if (!result) {
            print(texts_.text("cli.flow.node-begins", {{"title", title}}) + "\n");
            return;
        }
        print(fmt::format("{}{}{}\n", title + texts_.text("common.colon"),
                          outcomeTitle(result->outcome, texts_),
                          result->summary.empty() ? "" : ". " + printable(result->summary)));
    }

    const Flow& flow_;
    const Texts& texts_;
    std::map<Uuid, size_t> said_;
};

/// The run of the flow that a word names.
std::optional<Uuid> findRun(Context& context, NodesStore& store, const Flow& flow, const std::string& word) {
    const auto run =
        findNamed(context, store.runs(flow.id), word, {"cli.flow.unknown-run", "cli.flow.ambiguous"});
    return run ? std::optional(run->id) : std::nullopt;
}

Exit printPlan(Context& context, const std::vector<automation::FlowPlanLine>& plan) {
    if (context.format == Format::json) {
        printJson(plan);
        return Exit::done;
    }
    for (const auto& line : plan)
        print(fmt::format("{}{}{}\n", line.title, context.session.texts().text("common.colon"),
                          printable(line.text)));
    return Exit::done;
}

Exit follow(Context& context, OwnLoop& own, const Flow& flow, const automation::FlowStart& how) {
    automation::NodesRunner& runner = own.automation().service<automation::FlowsService>().runner();
    const Texts& texts = context.session.texts();
    Follower follower(flow, texts);
    const bool isSpoken = context.format == Format::people;
    const auto look = [&] {
        if (const auto states = runner.live().find(flow.id); isSpoken && states != runner.live().end())
            follower.look(states->second);
    };
    const auto observing = runner.observe([&](const Uuid& changed) {
        if (changed == flow.id)
            look();
    });
    std::optional<automation::FlowRunEnd> ended;
    const bool isStarted = runner.start(flow, how, [&](const automation::FlowRunEnd& end) {
        ended = end;
        own.finish();
    });
    if (!isStarted) {
        complain(runner.refusal(flow).value_or(texts.text("cli.flow.not-started")));
        return Exit::failed;
    }
    own.run(context.cancel, [&] { runner.stop(flow.id); });
    if (!ended)
        return Exit::failed;
    if (isSpoken) {
        look();
        print(fmt::format("{}{}{}\n", printable(flow.name), texts.text("common.colon"),
                          outcomeTitle(ended->run.outcome(flow), texts)));
    } else {
        printJson(ended->run);
    }
    return exitOf(logOutcome(ended->run.outcome(flow)));
}

Exit runFlow(Context& context, const RunOptions& options) {
    OwnLoop own(context.session);
    NodesStore& store = own.automation().service<automation::FlowsService>().store();
    const auto flow = findFlow(context, store, options.word);
    if (!flow)
        return Exit::failed;
    automation::FlowStart how{.values = valuesOf(options)};
    if (!options.resume.empty()) {
        how.resume = findRun(context, store, *flow, options.resume);
        if (!how.resume)
            return Exit::failed;
    }
    if (options.isDry)
        return printPlan(context,
                         own.automation().service<automation::FlowsService>().runner().plan(*flow, how));
    return follow(context, own, *flow, how);
}

Exit listRuns(Context& context, const std::string& word) {
    FlowShelf shelf;
    const auto flow = findFlow(context, shelf.store, word);
    if (!flow)
        return Exit::failed;
    const auto runs = shelf.store.runs(flow->id);
    if (context.format == Format::json) {
        printJson(runs);
        return Exit::done;
    }
    const Texts& texts = context.session.texts();
    if (runs.empty()) {
        print(texts.text("cli.flow.no-runs") + "\n");
        return Exit::done;
    }
    Table table({{texts.text("cli.column.id")},
                 {texts.text("cli.column.date")},
                 {texts.text("cli.column.trigger")},
                 {texts.text("cli.column.outcome")},
                 {texts.text("cli.column.event"), Align::left, true}});
    for (const FlowRun& run : runs)
        table.add(
            {run.id.text().substr(0, shownOfFlow), timestamp(run.startedAt, LocalCalendar()).substr(0, 16),
             texts.text(fmt::format("trigger.{}", rawValue(run.trigger))),
             run.finishedAt ? outcomeTitle(run.outcome(*flow), texts) : texts.text("cli.flow.interrupted"),
             printable(run.event.value_or(""))});
    print(table.text(outputWidth()));
    return Exit::done;
}

} // namespace

void describeFlowRuns(Verb& noun, CommandLine& line) {
    const auto options = std::make_shared<RunOptions>();
    Verb& run = noun.verb("run", line.text("cli.flow.run"));
    run.argument("FLOW", &options->word, line.text("cli.flow.flow")).required();
    run.option("--dry", &options->isDry, line.text("cli.flow.dry"));
    run.option("--resume", &options->resume, line.text("cli.flow.resume")).valueName("RUN");
    run.option("--file", &options->files, line.text("cli.flow.run-file")).valueName("PATH");
    run.option("--folder", &options->folder, line.text("cli.flow.run-folder")).valueName("PATH");
    run.option("--disk", &options->disk, line.text("cli.flow.run-disk")).valueName("PATH");
    line.onChange(run, [options](Context& context) { return runFlow(context, *options); });

    Verb& runs = noun.verb("runs", line.text("cli.flow.runs"));
    runs.argument("FLOW", &options->word, line.text("cli.flow.flow")).required();
    line.on(runs, [options](Context& context) { return listRuns(context, options->word); });
}

} // namespace vh::cli

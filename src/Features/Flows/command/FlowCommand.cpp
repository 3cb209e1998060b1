#include "Core/Csv.h"
#include "Core/Printable.h"
#include "Features/Flows/FlowFields.h"
#include "Features/Flows/FlowProblem.h"
#include "Features/Flows/FlowTexts.h"
#include "Features/Flows/command/FlowShelf.h"
#include "Platform/Files.h"
#include "app/Session.h"
#include "cli/Reply.h"
#include "cli/Table.h"

#include <unordered_map>

namespace vh {

namespace cli {

/// A problem as other programs read it.
struct ProblemReply {
    std::string key;
    bool blocks = false;
    std::optional<Uuid> node;
};

} // namespace cli

template <>
inline constexpr auto describe<cli::ProblemReply> = record(field("key", &cli::ProblemReply::key),
                                                           field("blocks", &cli::ProblemReply::blocks),
                                                           field("node", &cli::ProblemReply::node));

} // namespace vh

namespace vh::cli {

namespace {

using namespace flows;

std::string day(Date date) {
    return timestamp(date, LocalCalendar()).substr(0, 16);
}

std::string startOf(const Flow& flow, const Texts& texts) {
    const FlowTrigger* trigger = flow.start();
    return trigger ? triggerTitle(kindOf(*trigger), texts) : "";
}

Exit listFlows(Context& context) {
    FlowShelf shelf;
    const Texts& texts = context.session.texts();
    std::vector<Flow> flows = shelf.store.flows();
    for (const auto& each : shelf.store.companyFlows())
        flows.push_back(each.flow);
    for (const std::string& file : shelf.store.damaged())
        complain(texts.text("cli.flow.damaged", {{"path", printable(file)}}));
    if (context.format == Format::json) {
        printJson(flows);
        return Exit::done;
    }
    if (flows.empty()) {
        print(texts.text("cli.flow.none") + "\n");
        return Exit::done;
    }
    Table table({{texts.text("cli.column.id")},
                 {texts.text("cli.column.name"), Align::left, true},
                 {texts.text("cli.column.trigger")},
                 {texts.text("cli.column.nodes"), Align::right},
                 {texts.text("cli.column.changed")},
                 {texts.text("cli.column.last-run")},
                 {texts.text("cli.column.outcome")}});
    for (const Flow& flow : flows) {
        const auto run = shelf.store.lastRun(flow.id);
        table.add({flow.id.text().substr(0, shownOfFlow), printable(flow.name), startOf(flow, texts),
                   std::to_string(flow.nodes.size()), day(flow.updatedAt), run ? day(run->startedAt) : "",
                   run ? outcomeTitle(run->outcome(flow), texts) : ""});
    }
    print(table.text(outputWidth()));
    return Exit::done;
}

Exit newFlow(Context& context, const std::string& name) {
    FlowShelf shelf;
    const Flow flow = shelf.store.save(Flow::blank(name, systemNow()));
    if (context.format == Format::json)
        printJson(flow);
    else
        print(fmt::format("{}  {}\n", flow.id.text(), printable(flow.name)));
    return Exit::done;
}

void printNode(const FlowNode& node, const Texts& texts) {
    print(fmt::format("{}  {}\n", node.id.text().substr(0, shownOfFlow), titleOf(node, texts)));
    for (const FlowField& field : fieldsOf(node)) {
        if (field.value.empty() || field.key.ends_with(".kind"))
            continue;
        const std::string value =
            field.kind == FlowField::Kind::choice ? choiceTitle(field.key, field.value, texts) : field.value;
        print(fmt::format("          {}: {}\n", fieldTitle(field.key, texts), printable(value)));
    }
}

void printFlow(const Flow& flow, const Texts& texts) {
    print(fmt::format("{}  {}\n\n", flow.id.text(), printable(flow.name)));
    std::unordered_map<Uuid, const FlowNode*> nodes;
    for (const FlowNode& node : flow.nodes) {
        nodes.emplace(node.id, &node);
        printNode(node, texts);
    }
    const auto title = [&](const Uuid& id) {
        const auto found = nodes.find(id);
        return found == nodes.end() ? id.text().substr(0, shownOfFlow) : titleOf(*found->second, texts);
    };
    if (!flow.edges.empty())
        print("\n");
    for (const FlowEdge& edge : flow.edges)
        print(fmt::format("{} → {}  ({})\n", title(edge.from), title(edge.to),
                          texts.text(fmt::format("cli.flow.when.{}", rawValue(edge.condition)))));
}

Exit showFlow(Context& context, const std::string& word) {
    FlowShelf shelf;
    const auto flow = findFlow(context, shelf.store, word);
    if (!flow)
        return Exit::failed;
    if (context.format == Format::json)
        printJson(*flow);
    else
        printFlow(*flow, context.session.texts());
    return Exit::done;
}

Exit checkFlow(Context& context, const std::string& word) {
    FlowShelf shelf;
    const auto status = statusOf(word);
    const auto flow = status && status->type != FileType::folder ? readFlowFile(context, word)
                                                                 : findFlow(context, shelf.store, word);
    if (!flow)
        return Exit::failed;
    const Texts& texts = context.session.texts();
    const auto found = problemsOf(context, *flow);
    std::vector<ProblemReply> reply;
    bool blocks = false;
    for (const FlowProblem& problem : found) {
        reply.push_back({std::string(problem.key()), problem.blocks(), problem.node});
        blocks = blocks || problem.blocks();
    }
    if (context.format == Format::json) {
        printJson(reply);
    } else if (found.empty()) {
        print(texts.text("cli.flow.sound") + "\n");
    } else {
        for (const FlowProblem& problem : found) {
            const FlowNode* node = problem.node ? flow->node(*problem.node) : nullptr;
            print(fmt::format("{}{}\n", node ? titleOf(*node, texts) + texts.text("common.colon") : "",
                              problemText(problem, texts)));
        }
    }
    return blocks ? Exit::failed : found.empty() ? Exit::done : Exit::warnings;
}

} // namespace

void describeFlow(Verb& noun, CommandLine& line) {
    line.on(noun.verb("list", line.text("cli.flow.list")), listFlows);

    const auto word = std::make_shared<std::string>();
    Verb& fresh = noun.verb("new", line.text("cli.flow.new"));
    fresh.argument("NAME", word.get(), line.text("cli.flow.new-name")).required();
    line.onChange(fresh, [word](Context& context) { return newFlow(context, *word); });

    Verb& show = noun.verb("show", line.text("cli.flow.show"));
    show.argument("FLOW", word.get(), line.text("cli.flow.flow")).required();
    line.on(show, [word](Context& context) { return showFlow(context, *word); });

    Verb& check = noun.verb("check", line.text("cli.flow.check"));
    check.argument("FILE|FLOW", word.get(), line.text("cli.flow.file-or-flow")).required();
    line.on(check, [word](Context& context) { return checkFlow(context, *word); });

    describeFlowFiles(noun, line);
    describeFlowRuns(noun, line);
    noun.example("varnholt flow import backup.json");
    noun.example("varnholt flow check Backup");
    noun.example("varnholt flow run Backup --dry");
}

} // namespace vh::cli

#include "Features/Flows/view/FlowWords.h"

#include "Core/ByteFormat.h"
#include "Core/Printable.h"
#include "Features/Flows/FlowTexts.h"
#include "Platform/Host.h"
#include "app/AppTexts.h"
#include "app/PathText.h"
#include "app/ToolLook.h"

#include <array>
#include <fmt/format.h>
#include <utility>

namespace vh::app {

namespace {

using namespace flows;

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};

QString firstLine(std::string_view text) {
    return qtText(printable(text.substr(0, text.find('\n'))));
}

const std::string& nameOf(const FlowDiskMatch& match) {
    return match.label.empty() ? match.value : match.label;
}

const std::string& nameOf(const FlowShare& share) {
    return share.name.empty() ? share.host : share.name;
}

std::string_view iconOf(FlowTriggerKind kind) {
    switch (kind) {
    case FlowTriggerKind::manual:
        return "play";
    case FlowTriggerKind::schedule:
        return "clock";
    case FlowTriggerKind::diskMounted:
    case FlowTriggerKind::diskUnmounted:
        return "externaldrive";
    case FlowTriggerKind::newFiles:
        return "folder";
    case FlowTriggerKind::shareMounted:
        return "server.rack";
    case FlowTriggerKind::launch:
        return "app";
    case FlowTriggerKind::power:
        return "bolt";
    case FlowTriggerKind::idle:
        return "moon";
    case FlowTriggerKind::flowFinished:
        return "point.topleft.down.to.point.bottomright";
    case FlowTriggerKind::external:
        return "arrow.right";
    }
    return "play";
}

template <size_t... Index>
auto kindsOf(std::index_sequence<Index...>) {
    return std::array{FlowNodeKind(std::in_place_index<Index>)...};
}

} // namespace

std::span<const FlowNodeKind> emptyKinds() {
    static const auto kinds = kindsOf(std::make_index_sequence<std::variant_size_v<FlowNodeKind>>());
    return kinds;
}

QString FlowWords::text(std::string_view key, const std::vector<TextArgument>& arguments) const {
    return qtText(texts_.text(key, arguments));
}

QString FlowWords::duration(double seconds) const {
    return qtText(durationText(seconds, texts_.language()));
}

QString FlowWords::place(std::string_view path) const {
    const QString shown = displayPath(path, home_);
    const auto slash = shown.lastIndexOf(u'/');
    return slash < 0 || slash + 1 == shown.size() ? shown : shown.mid(slash + 1);
}

QString FlowWords::list(const std::vector<std::string>& texts) const {
    QStringList shown;
    for (const auto& each : texts)
        shown << place(each);
    return shown.join(QStringLiteral(", "));
}

QString FlowWords::kindTitle(std::string_view kind) const {
    return qtText(flows::kindTitle(kind, texts_));
}

QString FlowWords::kindIcon(std::string_view kind) {
    static constexpr std::pair<std::string_view, const char*> icons[] = {
        {"start", "play"},
        {"computer", "display.2"},
        {"tool", "wrench.and.screwdriver"},
        {"script", "terminal"},
        {"install", "app.badge.checkmark"},
        {"recipe", "list.bullet"},
        {"sync", "arrow.triangle.2.circlepath"},
        {"copy", "doc.on.doc.fill"},
        {"agent", "bubble.left"},
        {"wait", "clock"},
        {"notify", "bell"},
        {"email", "envelope"},
    };
    for (const auto& [name, icon] : icons)
        if (name == kind)
            return QString::fromLatin1(icon);
    return QStringLiteral("bolt");
}

QVariantList FlowWords::kindOptions(bool withStart) const {
    QVariantList options;
    for (const FlowNodeKind& each : emptyKinds()) {
        if (std::holds_alternative<StartNode>(each) && !withStart)
            continue;
        const std::string_view kind = caseName(each);
        options << QVariantMap{{QStringLiteral("value"), qtText(kind)},
                               {QStringLiteral("title"), kindTitle(kind)},
                               {QStringLiteral("line"), text("nodes-page.kind-line." + std::string(kind))},
                               {QStringLiteral("icon"), kindIcon(kind)}};
    }
    return options;
}

QString FlowWords::title(const FlowNode& node) const {
    if (!node.title.empty())
        return firstLine(node.title);
    const auto* computer = std::get_if<ComputerNode>(&node.kind);
    return computer && std::holds_alternative<ThisMac>(computer->computer) ? text("nodes-page.this-computer")
                                                                           : qtText(titleOf(node, texts_));
}

QString FlowWords::ownTitle(const FlowNode& node) const {
    return title({.kind = node.kind});
}

QString FlowWords::icon(const FlowNode& node) const {
    if (const auto* start = std::get_if<StartNode>(&node.kind))
        return qtText(iconOf(kindOf(start->trigger)));
    if (const auto* tool = std::get_if<ToolNode>(&node.kind))
        return toolIcon(toolID(tool->tool));
    return kindIcon(caseName(node.kind));
}

QString FlowWords::detail(const FlowNode& node) const {
    return std::visit(
        Overloaded{[&](const StartNode& start) { return startDetail(start.trigger); },
                   [&](const ComputerNode& each) {
                       return std::holds_alternative<ThisMac>(each.computer) ? qtText(printable(hostName()))
                                                                             : kindTitle("computer");
                   },
                   [&](const ToolNode& each) { return toolDetail(each.tool); },
                   [&](const ScriptNode& each) { return firstLine(each.name); },
                   [&](const InstallNode& each) { return list(each.entries); },
                   [](const RecipeNode&) { return QString(); },
                   [&](const SyncNode& each) {
                       return each.source.empty()
                                  ? QString()
                                  : place(each.source) + QStringLiteral(" → ") + place(each.destination);
                   },
                   [&](const CopyNode& each) {
                       return each.path.empty()
                                  ? QString()
                                  : place(each.path) + QStringLiteral(" → ") +
                                        text(fmt::format("nodes.choice.folder.{}", rawValue(each.folder)));
                   },
                   [](const AgentNode& each) { return firstLine(each.prompt); },
                   [&](const WaitNode& each) { return duration(static_cast<double>(each.seconds)); },
                   [](const NotifyNode& each) { return firstLine(each.message); },
                   [&](const EmailNode& each) {
                       const auto count = each.email.recipients.size();
                       return count == 0 ? QString() : text("nodes-page.detail.email", {{"count", count}});
                   }},
        node.kind);
}

QString FlowWords::toolDetail(const FleetTool& tool) const {
    if (const auto* copy = std::get_if<CopyMaterialTool>(&tool))
        if (!copy->destinations.empty())
            return text(copy->verify ? "nodes-page.detail.copies-verified" : "nodes-page.detail.copies",
                        {{"count", copy->destinations.size()}});
    for (const auto& each : pathsOf(tool))
        if (each.use == PathUse::write && !each.path.empty())
            return QStringLiteral("→ ") + place(each.path);
    for (const auto& each : textsOf(tool))
        if (!each.empty())
            return place(each);
    return {};
}

QString FlowWords::startDetail(const FlowTrigger& trigger) const {
    return std::visit(
        Overloaded{[&](const OnSchedule& each) { return qtText(description(each.schedule, texts_)); },
                   [](const OnDiskMounted& each) { return firstLine(nameOf(each.match)); },
                   [](const OnDiskUnmounted& each) { return firstLine(nameOf(each.match)); },
                   [&](const OnNewFiles& each) {
                       QStringList parts;
                       if (!each.folder.empty())
                           parts << place(each.folder);
                       if (!each.extensions.empty())
                           parts << list(each.extensions);
                       return parts.join(QStringLiteral(" · "));
                   },
                   [](const OnShareMounted& each) { return firstLine(nameOf(each.share)); },
                   [&](const OnIdle& each) {
                       return text("nodes-page.detail.idle", {{"minutes", each.minutes}});
                   },
                   [](const OnFlowFinished& each) { return firstLine(each.after.name); },
                   [](const auto&) {
                       return QString();
                   }},
        trigger);
}

QString FlowWords::startLine(const Flow& flow) const {
    const FlowTrigger* trigger = flow.start();
    return trigger ? startLine(*trigger) : text("nodes-page.start.none");
}

QString FlowWords::startLine(const FlowTrigger& trigger) const {
    const FlowTriggerKind kind = kindOf(trigger);
    if (!isFilledIn(trigger, {}) && kind != FlowTriggerKind::flowFinished)
        return text("nodes-page.start.unfinished", {{"trigger", triggerTitle(kind, texts_)}});
    std::vector<TextArgument> arguments{{"detail", startDetail(trigger).toStdString()}};
    if (const auto* files = std::get_if<OnNewFiles>(&trigger)) {
        arguments = {{"folder", place(files->folder).toStdString()},
                     {"time", duration(files->settle).toStdString()}};
    }
    return text(fmt::format("nodes-page.start.{}", rawValue(kind)), arguments);
}

QString FlowWords::condition(FlowEdge::Condition condition) const {
    return text(fmt::format("nodes-page.condition.{}", rawValue(condition)));
}

QString FlowWords::outcome(FlowNodeOutcome outcome) const {
    return qtText(outcomeTitle(outcome, texts_));
}

QString FlowWords::trigger(FlowRunTrigger trigger) const {
    return text(fmt::format("trigger.{}", rawValue(trigger)));
}

QString FlowWords::problem(const FlowProblem& problem) const {
    return qtText(problemText(problem, texts_));
}

} // namespace vh::app

#include "Features/Flows/FlowTrigger.h"

#include "Core/Fold.h"
#include "Features/Flows/FlowRun.h"
#include "Platform/Blank.h"

#include <algorithm>

namespace vh::flows {

namespace {

bool isEqualFolded(std::string_view a, std::string_view b) {
    return foldCase(a) == foldCase(b);
}

struct IsFilledIn {
    const Uuid& flow;

    bool operator()(const OnSchedule& on) const {
        const auto* hourly = std::get_if<HourlySchedule>(&on.schedule);
        return (hourly && hourly->hours < 1) || !faultOf(on.schedule); // below 1 counts as 1
    }
    bool operator()(const OnDiskMounted& on) const { return !isBlank(on.match.value); }
    bool operator()(const OnDiskUnmounted& on) const { return !isBlank(on.match.value); }
    bool operator()(const OnNewFiles& on) const { return !isBlank(on.folder); }
    bool operator()(const OnShareMounted& on) const { return on.share.server || !isBlank(on.share.host); }
    bool operator()(const OnIdle& on) const { return on.minutes > 0; }
    bool operator()(const OnFlowFinished& on) const { return on.after.flow && *on.after.flow != flow; }
    template <class Bare>
    requires std::is_empty_v<Bare>
    bool operator()(const Bare&) const { return true; }
};

} // namespace

bool FlowDiskMatch::matches(const FlowVolume& volume) const {
    if (scope == Scope::external && (volume.isInternal || volume.isNetwork))
        return false;
    if (scope == Scope::network && !volume.isNetwork)
        return false;
    const std::string_view wanted = trimmed(value);
    if (wanted.empty())
        return false;
    switch (rule) {
    case Rule::name:
        return isEqualFolded(volume.name, wanted);
    case Rule::prefix:
        return foldCase(volume.name).starts_with(foldCase(wanted));
    case Rule::disk:
        break;
    }
    return volume.uuid && isEqualFolded(*volume.uuid, wanted);
}

bool FlowShare::matches(const std::optional<Uuid>& mountedServer, std::string_view mountedHost) const {
    if (server && server == mountedServer)
        return true;
    const std::string_view wanted = trimmed(host);
    return !wanted.empty() && isEqualFolded(wanted, mountedHost);
}

bool accepts(FlowFinish when, FlowNodeOutcome outcome) {
    switch (outcome) {
    case FlowNodeOutcome::success:
        return when == FlowFinish::any || when == FlowFinish::success;
    case FlowNodeOutcome::warning:
        return when == FlowFinish::any || when == FlowFinish::warning;
    case FlowNodeOutcome::failed:
        return when == FlowFinish::any || when == FlowFinish::failed;
    case FlowNodeOutcome::skipped:
    case FlowNodeOutcome::cancelled:
        break;
    }
    return false;
}

FlowTriggerKind kindOf(const FlowTrigger& trigger) {
    return fromRaw<FlowTriggerKind>(caseName(trigger)).value();
}

FlowTrigger starting(FlowTriggerKind kind) {
    switch (kind) {
    case FlowTriggerKind::manual:
        break;
    case FlowTriggerKind::schedule:
        return OnSchedule{};
    case FlowTriggerKind::diskMounted:
        return OnDiskMounted{};
    case FlowTriggerKind::diskUnmounted:
        return OnDiskUnmounted{};
    case FlowTriggerKind::newFiles:
        return OnNewFiles{};
    case FlowTriggerKind::shareMounted:
        return OnShareMounted{};
    case FlowTriggerKind::launch:
        return OnLaunch{};
    case FlowTriggerKind::power:
        return OnPower{};
    case FlowTriggerKind::idle:
        return OnIdle{};
    case FlowTriggerKind::flowFinished:
        return OnFlowFinished{};
    case FlowTriggerKind::external:
        return OnExternal{};
    }
    return OnDemand{};
}

bool isFilledIn(const FlowTrigger& trigger, const Uuid& flowID) {
    return std::visit(IsFilledIn{flowID}, trigger);
}

std::vector<std::string> extensionsOf(std::string_view text) {
    constexpr std::string_view separators = ", \t\r\n\v\f";
    std::vector<std::string> extensions;
    for (size_t start = 0; start < text.size();) {
        const size_t end = std::min(text.find_first_of(separators, start), text.size());
        std::string_view word = text.substr(start, end - start);
        word.remove_prefix(std::min(word.find_first_not_of('.'), word.size()));
        if (!word.empty())
            extensions.push_back(foldCase(word));
        start = end + 1;
    }
    return extensions;
}

bool acceptsFile(std::string_view path, const std::vector<std::string>& extensions) {
    if (extensions.empty())
        return true;
    const std::string_view name = path.substr(path.rfind('/') + 1);
    const size_t dot = name.rfind('.');
    // What begins with its only point is hidden and has no extension.
    if (dot == std::string_view::npos || dot == 0)
        return false;
    return std::ranges::find(extensions, foldCase(name.substr(dot + 1))) != extensions.end();
}

} // namespace vh::flows

#include "Tools/SystemJunk/JunkExclusions.h"

#include <algorithm>
#include <array>
#include <vector>

namespace vh::junk {

namespace {

using enum RootKind;

bool matches(std::string_view pattern, std::string_view name) {
    if (pattern.ends_with('*'))
        return name.starts_with(pattern.substr(0, pattern.size() - 1));
    return name == pattern;
}

} // namespace

std::string_view categoryName(RootKind kind) {
    switch (kind) {
    case caches:
        return "Caches";
    case logs:
        return "Logs";
    case temporary:
        return "Temporary";
    case other:
        break;
    }
    return "Junk";
}

std::span<const KeepRule> keepRules() {
    // Names that begin with a dot need no rule: the scan never lists them.
    static const std::vector<KeepRule> rules{
        {"CloudKit", {}, "sync state of the system's cloud"},
        {"FamilyCircle", {}, "state of the family account"},
        {"com.apple.accountsd", {}, "state of the accounts service"},
        {"com.apple.Safari", {}, "the privacy cleaner's business"},
        {"varnholt*", {caches, logs, temporary}, "this program's own"},
        {"Varnholt*", {caches, logs, temporary}, "this program's own"},

        {"dconf", {caches}, "settings database shared with running programs"},
        {"ibus*", {caches, temporary}, "address of the running input method"},
        {"at-spi*", {caches, temporary}, "bus of the running assistive technologies"},
        {"keyring-*", {caches, temporary}, "sockets of the running keyring"},
        {"speech-dispatcher", {caches}, "socket and lock of the speech service"},
        {"doc", {caches}, "documents that sandboxed programs hold open"},
        {"gvfs*", {caches, temporary}, "mounted remote folders"},
        {"libvirt", {caches}, "sockets and logs of running virtual machines"},
        {"sessions", {caches}, "the saved desktop session"},
        {"tracker*", {caches, temporary}, "database of the desktop's file search, in use"},
        {"event-sound-cache.tdb*", {caches}, "database that every program with sounds maps"},
        {"ksycoca*", {caches}, "service database that every program of the desktop maps"},
        {"plasma*", {caches}, "shared memory of the running desktop"},
        {"icon-cache.kcache", {caches}, "shared memory of the running desktop"},
        {"keepassxc", {caches}, "window and database state, no cache"},
        {"JetBrains", {caches}, "holds the editors' local history"},
        {"rclone", {caches}, "holds files that are not uploaded yet"},

        {"com.apple.*", {temporary}, "scratch folders of system services"},
        {"mobiletimerd", {temporary}, "state of the timer service"},
        {"TemporaryItems", {temporary}, "documents being saved"},
        {"cloudkit", {temporary}, "sync state of the system's cloud"},
        {"systemd-private-*", {temporary}, "private temporary folder of a running service"},
        {"snap-private-tmp", {temporary}, "private temporary folders of sandboxed programs"},
        {"snap.*", {temporary}, "private temporary folder of a sandboxed program"},
        {"ssh-*", {temporary}, "socket of a running key agent or shared connection"},
        {"gpg-*", {temporary}, "socket of a running key agent"},
        {"dbus-*", {temporary}, "socket of a running message bus"},
        {"tmux-*", {temporary}, "socket of running terminal sessions"},
        {"pulse-*", {temporary}, "socket of the sound server"},
        {"runtime-*", {temporary}, "stands in for the user's runtime folder"},
        {"xauth*", {temporary}, "key that lets programs open windows"},
        {"krb5cc*", {temporary}, "tickets of the network login"},
        {"hsperfdata_*", {temporary}, "memory mapped by running Java programs"},
        {"podman-run-*", {temporary}, "state of running containers"},
        {"containers-user-*", {temporary}, "state of running containers"},
        {"storage-run-*", {temporary}, "state of running containers"},
    };
    return rules;
}

const KeepRule* keepRuleFor(std::string_view name, RootKind kind) {
    const auto rules = keepRules();
    const auto found = std::ranges::find_if(rules, [&](const KeepRule& rule) {
        return (rule.where.empty() || rule.where.contains(kind)) && matches(rule.pattern, name);
    });
    return found == rules.end() ? nullptr : &*found;
}

std::set<std::string> defaultDeniedBasenames() {
    std::set<std::string> names;
    for (const KeepRule& rule : keepRules())
        if (rule.where.empty())
            names.emplace(rule.pattern);
    return names;
}

} // namespace vh::junk

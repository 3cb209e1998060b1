#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/Message.h"
#include "Platform/FileIdentity.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vh {
namespace sync {

/// The date of links, and of what has none.
constexpr Date distantPast = std::chrono::sys_days{std::chrono::year{1} / 1 / 1};

/// One item of a tree.
struct SyncEntry {
    std::string relative; ///< bytes without a leading "/"
    bool isDirectory = false;
    int64_t size = 0; ///< bytes; 0 for folders and links
    Date mtime = distantPast;
    std::optional<std::string> link; ///< what a symbolic link says
};

struct SyncAction {
    enum class Kind { copy, update, remove, mkdir };
    Kind kind = Kind::copy;
    std::string relativePath;
    int64_t bytes = 0;

    std::string id() const;
    bool operator==(const SyncAction&) const = default;
};

/// What of a source is neither file, folder nor link: no sync copies it.
struct SyncLeftOut {
    int64_t pipes = 0, sockets = 0, devices = 0;
    bool operator==(const SyncLeftOut&) const = default;
};

/// What has to happen so that a destination becomes like its source.
struct SyncPlan {
    std::vector<SyncAction> actions; ///< in the order in which they are carried out
    int64_t unchanged = 0;
    std::optional<SyncLeftOut> leftOut; ///< nothing when there is none
    /// What of the source could not be read, and why. Nothing of it is deleted in the destination, and no
    /// run of this plan is without errors. Not stored.
    Messages unreadable;
    /// Folders that are there, but with another date than the source's, as one that a killed run had made: whatever is
    /// carried out gives them the source's metadata too. They alone are no reason for a run. Not stored.
    std::vector<std::string> folders;
    /// Which source and destination were compared; nothing when they are of elsewhere. Not stored.
    struct Roots {
        std::optional<FileIdentity> source, destination;
        bool operator==(const Roots&) const = default;
    };
    std::optional<Roots> roots;

    bool isEmpty() const { return actions.empty() && unreadable.empty(); }
    int64_t copies() const { return count(SyncAction::Kind::copy); }
    int64_t updates() const { return count(SyncAction::Kind::update); }
    int64_t deletes() const { return count(SyncAction::Kind::remove); }
    /// Of all that is copied or updated.
    int64_t bytes() const {
        int64_t sum = 0;
        for (const SyncAction& each : actions)
            if (each.kind == SyncAction::Kind::copy || each.kind == SyncAction::Kind::update)
                sum += each.bytes;
        return sum;
    }

private:
    int64_t count(SyncAction::Kind kind) const {
        return std::ranges::count(actions, kind, &SyncAction::kind);
    }
};

/// What became of a plan.
struct SyncResult {
    int64_t copied = 0, updated = 0, deleted = 0;
    Messages faults;                 ///< what went wrong; not in JSON
    std::vector<std::string> errors; ///< the same in words, for JSON
    bool stopped = false;
    std::optional<SyncLeftOut> leftOut; ///< as in the plan
};

} // namespace sync

template <>
inline constexpr auto describe<sync::SyncEntry> = record(field("relative", &sync::SyncEntry::relative),
                                                         field("isDirectory", &sync::SyncEntry::isDirectory),
                                                         field("size", &sync::SyncEntry::size),
                                                         field("mtime", &sync::SyncEntry::mtime),
                                                         field("link", &sync::SyncEntry::link));

template <>
inline constexpr auto describe<sync::SyncAction::Kind> =
    enumeration<sync::SyncAction::Kind>({{sync::SyncAction::Kind::copy, "copy"},
                                         {sync::SyncAction::Kind::update, "update"},
                                         {sync::SyncAction::Kind::remove, "delete"},
                                         {sync::SyncAction::Kind::mkdir, "mkdir"}});

template <>
inline constexpr auto describe<sync::SyncAction> = record(field("kind", &sync::SyncAction::kind),
                                                          field("relativePath",
                                                                &sync::SyncAction::relativePath),
                                                          field("bytes", &sync::SyncAction::bytes));

template <>
inline constexpr auto describe<sync::SyncLeftOut> = record(field("pipes", &sync::SyncLeftOut::pipes),
                                                           field("sockets", &sync::SyncLeftOut::sockets),
                                                           field("devices", &sync::SyncLeftOut::devices));

template <>
inline constexpr auto describe<sync::SyncPlan> = record(field("actions", &sync::SyncPlan::actions),
                                                        field("unchanged", &sync::SyncPlan::unchanged),
                                                        field("leftOut", &sync::SyncPlan::leftOut));

template <>
inline constexpr auto describe<sync::SyncResult> = record(field("copied", &sync::SyncResult::copied),
                                                          field("updated", &sync::SyncResult::updated),
                                                          field("deleted", &sync::SyncResult::deleted),
                                                          field("errors", &sync::SyncResult::errors),
                                                          field("stopped", &sync::SyncResult::stopped),
                                                          field("leftOut", &sync::SyncResult::leftOut));

inline std::string sync::SyncAction::id() const {
    return std::string(rawValue(kind)) + relativePath;
}

} // namespace vh

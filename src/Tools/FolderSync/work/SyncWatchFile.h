#pragma once

#include "Core/Describe.h"
#include "Platform/Folders.h"
#include "Tools/FolderSync/SyncPair.h"
#include "Tools/FolderSync/WatchState.h"
#include "Tools/FolderSync/work/SyncLook.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vh {
namespace automation {

/// What the process that leads says of a watched pair.
struct SyncWatchNote {
    sync::SyncPair pair;
    sync::WatchState state;
    /// The mount points that its folders were in when it was last well; empty before.
    std::string sourceMount, destinationMount;
};

/// How the watched pairs are, written by the process that leads for the others and for the next that leads. One thread
/// at a time.
class SyncWatchFile {
public:
    explicit SyncWatchFile(const Folders& folders);

    /// Whether there is a process that leads.
    bool isLed() const;
    /// What was written last, also by one that leads no longer; empty when it cannot be read.
    std::vector<SyncWatchNote> notes() const;
    /// How the watched pairs are; empty while no process leads.
    std::map<Uuid, sync::WatchState> states() const;
    /// Where the folders of that pair were when it was last well.
    SyncMounts mountsOf(const sync::SyncPair& pair) const;
    /// A person has looked at the plan of that pair: where it is held, it no longer is. Any process.
    void approve(const Uuid& pair) const;
    /// Whether somebody has, since this was asked last. The process that leads.
    bool takeApproval(const Uuid& pair) const;
    /// Only the process that leads calls it; what cannot be written is not said to the others.
    void write(const std::vector<SyncWatchNote>& notes);

private:
    std::string approvalOf(const Uuid& pair) const { return folder_ + "/" + pair.text() + ".approved"; }

    const std::string leadLock_;
    const std::string folder_;
    const std::string file_;
    std::string written_;
};

} // namespace automation

template <>
inline constexpr auto describe<sync::WatchState::Kind> = enumeration<sync::WatchState::Kind>(
    {{sync::WatchState::Kind::notPermitted, "notPermitted"},
     {sync::WatchState::Kind::held, "held"},
     {sync::WatchState::Kind::failed, "failed"},
     {sync::WatchState::Kind::watching, "watching"},
     {sync::WatchState::Kind::waitingForSource, "waitingForSource"},
     {sync::WatchState::Kind::waitingForDestination, "waitingForDestination"}});

template <>
inline constexpr auto describe<sync::WatchState> = record(field("kind", &sync::WatchState::kind),
                                                          field("text", &sync::WatchState::text),
                                                          field("deletes", &sync::WatchState::deletes));

template <>
inline constexpr auto describe<automation::SyncWatchNote> =
    record(field("pair", &automation::SyncWatchNote::pair), field("state", &automation::SyncWatchNote::state),
           field("sourceMount", &automation::SyncWatchNote::sourceMount),
           field("destinationMount", &automation::SyncWatchNote::destinationMount));

} // namespace vh

#include "Tools/FolderSync/SyncApply.h"

#include "Core/ErrorMessage.h"
#include "Core/Fold.h"
#include "Core/ItemRemoval.h"
#include "Platform/FolderReader.h"
#include "Platform/SourceFile.h"
#include "Platform/SystemError.h"
#include "Platform/Trash.h"

#include <algorithm>
#include <cerrno>
#include <ranges>

namespace vh::sync {

namespace {

using Kind = SyncAction::Kind;

constexpr std::string_view temporarySuffix = ".vhsync-tmp";
constexpr int64_t pieceBytes = 8 << 20;
/// Smaller files are read and written in one call each.
constexpr int64_t smallFile = 256 << 10;

/// Thrown out of a file in hand when the run is to stop.
struct Stopped {};
/// Thrown where it is us, not the system, who leave something as it is.
struct Refused {
    Message why;
};

/// A plan may come from elsewhere: no part of it leads out of the folders.
void refuseToLeave(const std::string& relative) {
    for (const auto part : std::views::split(relative, '/')) {
        const std::string_view name(part.begin(), part.end());
        if (name.empty() || name == "." || name == "..")
            throw Refused{{"folder-sync.problem.leads-out", {}}};
    }
}

std::string parentOf(const std::string& relative) {
    const size_t slash = relative.rfind('/');
    return slash == std::string::npos ? std::string() : relative.substr(0, slash);
}

bool isFolderIn(CopyFolder& folder, const std::string& relative) {
    try {
        return folder.isFolder(relative);
    } catch (const SystemError&) {
        return false;
    }
}

} // namespace

SyncApply::SyncApply(const std::string& source, const std::string& destination,
                     const SyncEngine::Steering& steering)
    : steering_(steering), source_(source), destination_(destination, std::string(temporarySuffix)) {}

SyncResult SyncApply::run(const SyncPlan& plan) {
    result_ = {};
    result_.faults = plan.unreadable;
    result_.leftOut = plan.leftOut;
    plan_ = &plan;
    folders_.insert(plan.folders.begin(), plan.folders.end());
    const auto total = static_cast<int64_t>(plan.actions.size());
    for (int64_t done = 0; const SyncAction& action : plan.actions) {
        if (!goesOn()) {
            result_.stopped = true;
            break;
        }
        isFailed_ = false;
        landed_.reset();
        try {
            carryOut(action);
        } catch (const Stopped&) {
            result_.stopped = true;
            break;
        } catch (const Refused& refused) {
            isFailed_ = true;
            addFault(action.relativePath, refused.why);
        } catch (const SystemError& error) {
            isFailed_ = true;
            addFault(action.relativePath, reasonOf(error));
        }
        if (steering_.ended)
            steering_.ended({action, isFailed_, landed_});
        if (steering_.progress)
            steering_.progress(++done, total);
    }
    finishFolders();
    for (const CopyFolder* each : {&source_, &destination_})
        if (!each->isStillThere())
            addFault(each->path(), {"folder-sync.problem.folder-gone", {}});
    return std::move(result_);
}

void SyncApply::carryOut(const SyncAction& action) {
    refuseToLeave(action.relativePath);
    noteChanged(parentOf(action.relativePath));
    switch (action.kind) {
    case Kind::remove:
        return remove(action.relativePath);
    case Kind::mkdir:
        return makeFolder(action.relativePath);
    case Kind::copy:
    case Kind::update:
        return copy(action);
    }
}

void SyncApply::makeFolder(const std::string& relative) {
    destination_.makeFolder(relative);
    folders_.insert(relative);
    // Nobody shall look into it meanwhile who may not later; that we may write is for the time being.
    FileMetadata metadata = source_.metadataOfFolder(relative);
    metadata.mode |= 0700;
    destination_.applyToFolder(relative, metadata);
}

void SyncApply::makeParent(const std::string& relative) {
    std::string parent = parentOf(relative);
    if (parent_ == parent)
        return;
    if (!parent.empty())
        destination_.makeFolder(parent);
    parent_ = std::move(parent);
}

/// What lands in a folder changes its dates.
void SyncApply::noteChanged(const std::string& folder) {
    if (folder.empty() || folder == changed_)
        return;
    folders_.insert(folder);
    changed_ = folder;
}

void SyncApply::finishFolders() {
    for (const std::string& relative : std::views::reverse(folders_))
        try {
            refuseToLeave(relative);
            if (isFolderIn(source_, relative) && isFolderIn(destination_, relative))
                noteRefused(relative,
                            destination_.applyToFolder(relative, source_.metadataOfFolder(relative)));
        } catch (const Refused& refused) {
            addFault(relative, refused.why);
        } catch (const SystemError& error) {
            addFault(relative, reasonOf(error));
        }
}

void SyncApply::addFault(const std::string& relative, Message what) {
    result_.faults.push_back(atPath(relative, std::move(what)));
}

void SyncApply::noteRefused(const std::string& relative, const RefusedMetadata& refused) {
    if (refused.empty())
        return;
    Messages parts;
    for (const RefusedPart& each : refused)
        parts.push_back(messageOf(each));
    addFault(relative, {"folder-sync.problem.without", {{"parts", std::move(parts)}}});
}

/// Whether the source has something there that is no folder.
bool SyncApply::isFileInSource(const std::string& relative) {
    try {
        return source_.at(relative) && !source_.isFolder(relative);
    } catch (const SystemError&) {
        return false;
    }
}

/// Whether something that a sync would copy has exactly this name in the source by now. Throws SystemError when that
/// cannot be known, as when its disk went.
bool SyncApply::isInSource(const std::string& relative) {
    const std::string parent = parentOf(relative);
    try {
        if (!source_.at(relative))
            return false;
        FolderReader folder(source_.path() + '/' + parent); // which may take other letters for the same name
        while (const auto entry = folder.next())
            if (entry->name == std::string_view(relative).substr(parent.empty() ? 0 : parent.size() + 1))
                return entry->type != FileType::socket && entry->type != FileType::other;
        return false;
    } catch (const SystemError& error) {
        if (error.code() == ENOENT || error.code() == ENOTDIR ||
            error.code() == ELOOP) // nor has it the folder
            return false;
        throw;
    }
}

void SyncApply::remove(const std::string& relative) {
    const std::string parent = parentOf(relative);
    if (!parent.empty() && isFileInSource(parent)) {
        // It went with its folder, or the folder stays whole because the file could not be copied.
        if (!destination_.isFolder(parent))
            ++result_.deleted;
        return;
    }
    const auto identity = destination_.at(relative);
    if (!identity && relative.ends_with(temporarySuffix))
        return; // a killed run had left it, and the file it was for is there by now
    if (!identity)
        throw SystemError(ENOENT, relative);
    if (isInSource(relative))
        throw Refused{{"folder-sync.problem.came-back", {}}};
    moveToTrash(relative, identity);
    ++result_.deleted;
}

/// Refused when the path leads to anything else, as through a link put there meanwhile.
void SyncApply::moveToTrash(const std::string& relative, const std::optional<FileIdentity>& identity) {
    const std::string path = destination_.path() + '/' + relative;
    if (steering_.removing)
        steering_.removing(path);
    landed_ = removeItem(path, RemovalMethod::trash, identity);
}

void SyncApply::copy(const SyncAction& action) {
    const std::string& relative = action.relativePath;
    makeParent(relative);
    try {
        if (const auto link = source_.link(relative))
            place(action, [&](auto how) { destination_.placeLink(relative, *link, how); });
        else
            copyFile(action);
    } catch (const SystemError& error) {
        isFailed_ = true;
        addFault(relative, copyFailure(relative, error));
        return;
    }
    ++(action.kind == Kind::copy ? result_.copied : result_.updated);
}

void SyncApply::copyFile(const SyncAction& action) {
    const std::string& relative = action.relativePath;
    const SourceFile source = source_.source(relative);
    PartialFile partial = destination_.create(relative, 0600);
    if (!fill(partial, source))
        throw Stopped();
    if (source.hasChanged())
        throw Refused{{"folder-sync.problem.source-changed", {}}};
    if (partial.state().bytes != source.size()) // a volume may lose in silence what is too large for it
        throw Refused{{"folder-sync.problem.not-whole", {}}};
    const auto refused = partial.apply(source.metadata());
    place(action, [&](auto how) { partial.place(how); });
    noteRefused(relative, refused);
}

Message SyncApply::copyFailure(const std::string& relative, const SystemError& error) const {
    const auto isTwin = [&](const SyncAction& other) {
        return other.relativePath.size() == relative.size() && other.relativePath != relative &&
               foldCase(other.relativePath) == foldCase(relative);
    };
    if (error.code() == EEXIST && std::ranges::any_of(plan_->actions, isTwin))
        return {"folder-sync.problem.case-twin", {}};
    return {"folder-sync.problem.copy-failed",
            {{"code", std::to_string(error.code())}, {"reason", reasonOf(error)}}};
}

/// False when the run is to stop.
bool SyncApply::fill(PartialFile& partial, const SourceFile& source) {
    if (!refusesClones_ && source.device() == destination_.device()) {
        const auto cloned = partial.cloneFrom(source);
        if (cloned == PartialFile::Cloned::yes)
            return true;
        refusesClones_ = cloned == PartialFile::Cloned::never;
    }
    if (!source.hasHoles() && source.size() <= smallFile) {
        fillSmall(partial, source);
        return true;
    }
    for (int64_t offset = 0; offset < source.size();) {
        const auto stretch = source.stretchFrom(offset);
        if (!stretch)
            break;
        const int64_t end = std::min(stretch->end, source.size());
        for (offset = stretch->begin; offset < end;) {
            const int64_t copied = partial.copyFrom(source, offset, std::min(pieceBytes, end - offset));
            if (copied == 0)
                return true; // it has become shorter, which shows
            offset += copied;
            if (steering_.copied)
                steering_.copied(copied);
            if (offset < source.size() && !goesOn())
                return false;
        }
    }
    if (source.hasHoles())
        partial.setSize(source.size());
    return true;
}

void SyncApply::fillSmall(PartialFile& partial, const SourceFile& source) {
    block_.resize(smallFile);
    const std::span<char> room(block_.data(), static_cast<size_t>(source.size()));
    partial.writeAt(0, {block_.data(), source.readAt(0, room)});
}

/// What is new replaces nothing that came there since, nor a name that differs in case alone where that is the same
/// file. A folder of its name goes to the Trash: the source has nothing of it.
template <class Place>
void SyncApply::place(const SyncAction& action, Place put) {
    using How = PartialFile::Place;
    if (action.kind == Kind::update)
        return put(How::replacing);
    const std::string& relative = action.relativePath;
    try {
        return put(How::free);
    } catch (const SystemError& error) {
        if (error.code() != EEXIST || !destination_.isFolder(relative))
            throw;
    }
    moveToTrash(relative, destination_.at(relative));
    try {
        put(How::free);
    } catch (const SystemError&) {
        restoreFromTrash(*landed_, destination_.path() + '/' + relative);
        landed_.reset();
        throw;
    }
}

} // namespace vh::sync

#include "Tools/FastCopy/CopyDestination.h"

#include "Core/ErrorMessage.h"
#include "Core/Fold.h"
#include "Platform/FileMetadata.h"
#include "Platform/SystemError.h"
#include "Tools/FastCopy/CopyProofs.h"

namespace vh::copy {

namespace {

using Refused = Landing::Refused;

Message refusedBy(const SystemError& error) {
    return {"fast-copy.problem.refused", {{"reason", reasonOf(error)}}};
}

Message withoutThese(Messages parts) {
    return {"fast-copy.problem.without", {{"parts", std::move(parts)}}};
}

std::optional<Message> withoutThese(const RefusedMetadata& refused) {
    if (refused.empty())
        return std::nullopt;
    Messages parts;
    for (const RefusedPart& each : refused)
        parts.push_back(messageOf(each));
    return withoutThese(std::move(parts));
}

} // namespace

CopyDestination::CopyDestination(const CopyRun& run, size_t index, CopyProofs* proofs, bool mayMeet)
    : index_(index), options_(run.options()), proofs_(proofs), mayMeet_(mayMeet) {
    try {
        folder_.emplace(run.destinations()[index]);
        isCaseBlind_ = folder_->isCaseBlind();
        mayMeet_ = mayMeet || isCaseBlind_;
    } catch (const SystemError& error) { // what cannot be written to says so at each file
        refusal_ = refusedBy(error);
    }
}

std::optional<Message> CopyDestination::makeFolder(const std::string& relative) {
    if (!folder_)
        return refusal_;
    try {
        // Nobody shall look into it meanwhile who may not later.
        if (folder_->makeFolder(relative, options_.keepsMetadata() ? 0700 : 0777))
            emptyFolder_ = relative + '/';
        return std::nullopt;
    } catch (const SystemError& error) {
        return reasonOf(error);
    }
}

std::optional<Message> CopyDestination::finishFolder(const std::string& relative, const std::string& source) {
    if (!folder_)
        return refusal_;
    try {
        return withoutThese(folder_->applyToFolder(relative, metadataOfFolder(source)));
    } catch (const SystemError& error) {
        return withoutThese(Messages{messageOf(error)});
    }
}

/// Nothing need be asked about a folder that was made a moment ago: should somebody else put a file there, the name is
/// refused in the end.
bool CopyDestination::isFree(const std::string& relative) {
    return !mayMeet_ && !emptyFolder_.empty() && relative.starts_with(emptyFolder_) &&
           relative.find('/', emptyFolder_.size()) == std::string::npos;
}

/// What an interrupted run of this copy had put there, and nobody has touched since, is as good as not there.
bool CopyDestination::isOurs() {
    const CopyProofs::Note* note = proofs_ ? proofs_->find(index_, relative_) : nullptr;
    const auto there = note ? folder_->fileState(note->place) : std::nullopt;
    if (!there || there->inode != note->copy.inode || there->modified != note->copy.modified)
        return false;
    place_ = note->place;
    isReplacing_ = note->isReplaced;
    return true;
}

std::optional<Landing> CopyDestination::chooseName(const FileIdentity& source) {
    place_ = relative_;
    how_ = PartialFile::Place::free;
    isReplacing_ = false;
    if (isFree(relative_))
        return std::nullopt;
    const auto there = folder_->at(relative_);
    if (isOurs()) {
        how_ = PartialFile::Place::replacing;
        return std::nullopt;
    }
    if (!there)
        return std::nullopt;
    if (options_.conflict == CopyConflict::rename) {
        place_ = folder_->freeName(relative_);
        return std::nullopt;
    }
    if (mayMeet_ && placed_.contains(isCaseBlind_ ? foldCase(relative_) : relative_))
        return failedLanding(
            {isCaseBlind_ ? "fast-copy.problem.same-name-but-case" : "fast-copy.problem.same-name", {}});
    if (options_.conflict == CopyConflict::skip)
        return Landing{CopiedFileState::skipped, false, relative_, std::nullopt};
    if (there == source)
        return failedLanding({"fast-copy.problem.is-source", {}});
    how_ = PartialFile::Place::replacing;
    isReplacing_ = true;
    return std::nullopt;
}

bool CopyDestination::mayClone(uint64_t device) const {
    return options_.cloneWhenPossible && !refusesClones_ && folder_ && device == folder_->device();
}

std::optional<Landing> CopyDestination::begin(const std::string& relative, const SourceFile& source) {
    written_ = 0;
    error_.reset();
    if (!folder_)
        return failedLanding(refusal_, Refused::beginning);
    try {
        relative_ = relative;
        if (auto verdict = chooseName(source.identity()))
            return verdict;
        using Folder = CopyFolder::Folder;
        const Folder folder = isFree(place_) ? Folder::madeJustNow : Folder::known;
        partial_.emplace(options_.keepsMetadata()
                             ? folder_->create(place_, source.metadata(), folder)
                             : folder_->create(place_, source.metadata().mode & 0777, folder));
        if (!mayClone(source.device()))
            return std::nullopt;
        switch (partial_->cloneFrom(source)) {
        case PartialFile::Cloned::yes:
            return place(CopiedFileState::cloned, source);
        case PartialFile::Cloned::never:
            refusesClones_ = true;
            break;
        case PartialFile::Cloned::notThis:
            break;
        }
    } catch (const SystemError& error) {
        partial_.reset();
        return failedLanding(refusedBy(error), Refused::beginning);
    }
    return std::nullopt;
}

Landing CopyDestination::placeLink(const std::string& relative, const CopyLink& link) {
    if (!folder_)
        return failedLanding(refusal_, Refused::beginning);
    try {
        relative_ = relative;
        if (auto verdict = chooseName({}))
            return std::move(*verdict);
        folder_->placeLink(place_, link, how_);
        if (mayMeet_)
            placed_.insert(isCaseBlind_ ? foldCase(place_) : place_);
        const auto there = folder_->link(place_);
        if (!there || there->target != link.target)
            return failedLanding({"fast-copy.problem.not-whole", {}});
        return {CopiedFileState::copied, isReplacing_, place_, std::nullopt};
    } catch (const SystemError& error) {
        return failedLanding(refusedBy(error), Refused::beginning);
    }
}

void CopyDestination::write(int64_t offset, std::string_view bytes) {
    try {
        partial_->writeAt(offset, bytes);
        written_ += static_cast<int64_t>(bytes.size());
    } catch (const SystemError& error) {
        error_ = refusedBy(error);
    }
}

Landing CopyDestination::end(const SourceFile& source, int64_t size) {
    try {
        if (isGood() && size != written_)
            partial_->setSize(size);
        if (isGood() &&
            partial_->state().bytes != size) // a volume may lose in silence what is too large for it
            error_ = Message{"fast-copy.problem.not-whole", {}};
    } catch (const SystemError& error) {
        error_ = refusedBy(error);
    }
    if (isGood())
        return place(CopiedFileState::copied, source);
    partial_.reset();
    return failedLanding(*error_, Refused::writing);
}

Landing CopyDestination::place(CopiedFileState state, const SourceFile& source) {
    Landing landing{state, isReplacing_, place_, std::nullopt};
    if (options_.keepsMetadata())
        landing.problem = withoutThese(partial_->apply(source.metadata()));
    try {
        // A power cut shall not take the old file while the new one is not on the medium.
        if (how_ == PartialFile::Place::replacing && options_.verifies())
            partial_->flush();
        if (proofs_)
            proofs_->noteLanding(index_, relative_,
                                 {place_,
                                  source.state(),
                                  partial_->state(),
                                  state == CopiedFileState::cloned,
                                  isReplacing_,
                                  true,
                                  {}});
        partial_->place(how_);
        if (mayMeet_)
            placed_.insert(isCaseBlind_ ? foldCase(place_) : place_);
    } catch (const SystemError& error) {
        landing = failedLanding({"fast-copy.problem.not-placed", {{"reason", reasonOf(error)}}});
    }
    partial_.reset();
    return landing;
}

} // namespace vh::copy

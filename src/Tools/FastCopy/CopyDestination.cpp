#include "Tools/FastCopy/CopyDestination.h"

#include "Core/Fold.h"
#include "Platform/FileMetadata.h"
#include "Platform/SourceFile.h"
#include "Platform/SystemError.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace vh::copy {

namespace {

Landing failure(std::string problem) {
    return {CopiedFileState::failed, false, {}, std::move(problem)};
}

std::string refusedBy(const SystemError& error) {
    return "the destination did not accept the file (" + error.reason() + ")";
}

std::string withoutThese(const std::vector<std::string>& refused) {
    return fmt::format("copied, but without {}", fmt::join(refused, ", "));
}

} // namespace

CopyDestination::CopyDestination(const std::string& path, const CopyOptions& options)
    : folder_(path), options_(options) {
    try {
        isCaseBlind_ = folder_.isCaseBlind();
    } catch (const SystemError&) { // what cannot be written to says so at each file
    }
}

std::string CopyDestination::makeFolder(const CopyItem& item) {
    try {
        folder_.makeFolder(item.relative);
        return {};
    } catch (const SystemError& error) {
        return error.what();
    }
}

std::string CopyDestination::finishFolder(const CopyItem& item) {
    try {
        const auto refused = folder_.applyToFolder(item.relative, metadataOfFolder(item.source));
        return refused.empty() ? "" : withoutThese(refused);
    } catch (const SystemError& error) {
        return withoutThese({error.what()});
    }
}

bool CopyDestination::hasTakenNameInOtherCase(const CopyItem& item) const {
    return isCaseBlind_ && placedFolded_.contains(foldCase(item.relative));
}

std::optional<Landing> CopyDestination::chooseName(const CopyItem& item) {
    relative_ = item.relative;
    how_ = PartialFile::Place::free;
    if (!folder_.at(relative_))
        return std::nullopt;
    if (options_.conflict == CopyConflict::rename) {
        relative_ = folder_.freeName(relative_);
        return std::nullopt;
    }
    if (hasTakenNameInOtherCase(item))
        return failure("another file of this copy has the same name there but for upper and lower case");
    if (options_.conflict == CopyConflict::skip)
        return Landing{CopiedFileState::skipped, false, relative_, {}};
    how_ = PartialFile::Place::replacing;
    return std::nullopt;
}

bool CopyDestination::mayClone(const SourceFile& source) const {
    return options_.cloneWhenPossible && !refusesClones_ && source.device() == folder_.device();
}

std::optional<Landing> CopyDestination::begin(const CopyItem& item, const SourceFile& source) {
    written_ = 0;
    error_.clear();
    try {
        if (auto verdict = chooseName(item))
            return verdict;
        // Others come to know a file with rights of its own only when it is whole.
        const unsigned mode = options_.keepsMetadata() ? 0600 : source.metadata().mode & 0777;
        partial_.emplace(folder_.create(relative_, mode));
        if (!mayClone(source))
            return std::nullopt;
        if (partial_->cloneFrom(source))
            return place(CopiedFileState::cloned, source);
        refusesClones_ = true;
    } catch (const SystemError& error) {
        partial_.reset();
        return failure(refusedBy(error));
    }
    return std::nullopt;
}

void CopyDestination::write(int64_t offset, std::string_view bytes) {
    try {
        partial_->writeAt(offset, bytes);
        written_ += static_cast<int64_t>(bytes.size());
    } catch (const SystemError& error) {
        error_ = refusedBy(error);
    }
}

int64_t CopyDestination::copy(const SourceFile& source, int64_t offset, int64_t most) {
    try {
        const int64_t copied = partial_->copyFrom(source, offset, most);
        written_ += copied;
        return copied;
    } catch (const SystemError& error) {
        error_ = refusedBy(error);
        return 0;
    }
}

Landing CopyDestination::end(const SourceFile& source, int64_t size) {
    if (!isGood()) {
        partial_.reset();
        return failure(error_);
    }
    try {
        if (size != written_)
            partial_->setSize(size);
    } catch (const SystemError& error) {
        partial_.reset();
        return failure(refusedBy(error));
    }
    return place(CopiedFileState::copied, source);
}

Landing CopyDestination::place(CopiedFileState state, const SourceFile& source) {
    Landing landing{state, how_ == PartialFile::Place::replacing, relative_, {}};
    if (options_.keepsMetadata())
        if (const auto refused = partial_->apply(source.metadata()); !refused.empty())
            landing.problem = withoutThese(refused);
    try {
        partial_->place(how_);
        if (isCaseBlind_)
            placedFolded_.insert(foldCase(relative_));
    } catch (const SystemError& error) {
        landing = failure("could not be put in place (" + error.reason() + ")");
    }
    partial_.reset();
    return landing;
}

} // namespace vh::copy

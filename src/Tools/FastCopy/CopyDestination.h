#pragma once

#include "Platform/CopyFolder.h"
#include "Tools/FastCopy/CopyItems.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/CopyRun.h"

#include <atomic>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace vh::copy {

class CopyProofs;

/// One destination of a copy: decides what a file is to be called there, and puts it there. What fails becomes the
/// landing; nothing throws. One thread at a time.
class CopyDestination {
public:
    /// `proofs` may be null. `mayMeet` when two of the sources have one name.
    CopyDestination(const CopyRun& run, size_t index, CopyProofs* proofs, bool mayMeet);

    /// Why it could not be made; nothing when it is there.
    std::optional<Message> makeFolder(const std::string& relative);
    /// Gives a folder the source's metadata, once all in it has landed. What could not be given; nothing when it was all.
    std::optional<Message> finishFolder(const std::string& relative, const std::string& source);

    /// Begins a file; the landing when that is already its end: skipped, cloned or failed.
    std::optional<Landing> begin(const std::string& relative, const SourceFile& source);
    void write(int64_t offset, std::string_view bytes);
    /// Whether everything was accepted so far.
    bool isGood() const { return !error_; }
    /// Gives the file its size, metadata and name.
    Landing end(const SourceFile& source, int64_t size);
    /// Puts a link there, as a link, and reads it back.
    Landing placeLink(const std::string& relative, const CopyLink& link);
    /// Removes what was begun.
    void drop() { partial_.reset(); }
    /// Whether its path still leads to the folder that was written to.
    bool isStillThere() const { return !folder_ || folder_->isStillThere(); }
    /// Whether it is worth trying to share a file's blocks. Any thread.
    bool mayClone(uint64_t device) const;

private:
    std::optional<Landing> chooseName(const FileIdentity& source);
    bool isFree(const std::string& relative);
    bool isOurs();
    Landing place(CopiedFileState state, const SourceFile& source);

    const size_t index_;
    const CopyOptions& options_;
    CopyProofs* const proofs_;
    std::optional<CopyFolder> folder_; ///< nothing when it cannot be opened
    Message refusal_;                  ///< why then
    bool isCaseBlind_ = false;
    bool mayMeet_ = false;                   ///< two files of this copy may want one name
    std::unordered_set<std::string> placed_; ///< only then
    std::atomic<bool> refusesClones_ = false;
    std::string emptyFolder_; ///< that was made last

    std::optional<PartialFile> partial_; ///< of the file in hand
    std::string relative_;               ///< what it is called in the copy
    std::string place_;                  ///< where it will land
    PartialFile::Place how_ = PartialFile::Place::free;
    bool isReplacing_ = false; ///< what was not ours
    int64_t written_ = 0;
    std::optional<Message> error_;
};

} // namespace vh::copy

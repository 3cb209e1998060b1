#pragma once

#include "Platform/CopyFolder.h"
#include "Tools/FastCopy/CopyItems.h"
#include "Tools/FastCopy/CopyOptions.h"
#include "Tools/FastCopy/CopyRun.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace vh {
class SourceFile;
}

namespace vh::copy {

/// One destination of a copy: decides what a file is to be called there, and puts it there. What fails becomes the
/// landing; nothing throws. One thread at a time.
class CopyDestination {
public:
    /// Throws SystemError when the folder cannot be opened.
    CopyDestination(const std::string& path, const CopyOptions& options);

    /// Why it could not be made, empty when it is there.
    std::string makeFolder(const CopyItem& item);
    /// Gives a folder the source's metadata, once all in it has landed. What could not be given, empty when it was all.
    std::string finishFolder(const CopyItem& item);

    /// Begins a file; the landing when that is already its end: skipped, cloned or failed.
    std::optional<Landing> begin(const CopyItem& item, const SourceFile& source);
    void write(int64_t offset, std::string_view bytes);
    /// Inside the kernel; 0 at the source's end or after a failure.
    int64_t copy(const SourceFile& source, int64_t offset, int64_t most);
    /// Whether everything was accepted so far.
    bool isGood() const { return error_.empty(); }
    int64_t written() const { return written_; }
    /// Gives the file its size, metadata and name.
    Landing end(const SourceFile& source, int64_t size);
    /// Removes what was begun.
    void drop() { partial_.reset(); }

private:
    std::optional<Landing> chooseName(const CopyItem& item);
    bool hasTakenNameInOtherCase(const CopyItem& item) const;
    Landing place(CopiedFileState state, const SourceFile& source);
    bool mayClone(const SourceFile& source) const;

    CopyFolder folder_;
    const CopyOptions& options_;
    bool isCaseBlind_ = false;
    bool refusesClones_ = false;
    std::unordered_set<std::string> placedFolded_; ///< only where names differ by more than case

    std::optional<PartialFile> partial_; ///< of the file in hand
    std::string relative_;               ///< where it will land
    PartialFile::Place how_ = PartialFile::Place::free;
    int64_t written_ = 0;
    std::string error_;
};

} // namespace vh::copy

#pragma once

#include <stdexcept>
#include <string>

namespace vh::junk {

/// Why a clean, or one item of it, is refused.
class JunkCleanerError : public std::runtime_error {
public:
    enum class Kind {
        rootDeletionForbidden,
        deniedBasename,
        emptySelection,
        missingReport,
        changedSinceScan,
        neededFolder, ///< holds the home folder, a root, the working folder or this program's own data
        mounted,
        notAFile, ///< a socket, pipe or device
        foreign,  ///< another user's
        notLogs,  ///< state of a program rather than its logs
        inUse,
    };

    /// `subject` is the path or name that the text speaks of.
    explicit JunkCleanerError(Kind kind, const std::string& subject = {});

    const Kind kind;
};

} // namespace vh::junk

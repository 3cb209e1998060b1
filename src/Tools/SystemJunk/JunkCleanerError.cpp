#include "Tools/SystemJunk/JunkCleanerError.h"

#include <string_view>

namespace vh::junk {

namespace {

std::string_view textOf(JunkCleanerError::Kind kind) {
    using enum JunkCleanerError::Kind;
    switch (kind) {
    case rootDeletionForbidden:
        return "Refusing to delete allowlist root: ";
    case deniedBasename:
        return "Refusing to delete denied item: ";
    case emptySelection:
        return "No items selected.";
    case missingReport:
        return "Run a scan before cleaning.";
    case changedSinceScan:
        return "Refusing to delete what changed since the scan: ";
    case neededFolder:
        return "Refusing to delete a folder that is needed: ";
    case mounted:
        return "Refusing to delete a folder with a mounted volume: ";
    case notAFile:
        return "Refusing to delete a socket, pipe or device: ";
    case foreign:
        return "Operation not permitted on another user's item: ";
    case notLogs:
        return "Refusing to delete what holds more than logs: ";
    case inUse:
        return "Still in use: ";
    }
    return {};
}

} // namespace

JunkCleanerError::JunkCleanerError(Kind why, const std::string& subject)
    : std::runtime_error(std::string(textOf(why)) + subject), kind(why) {}

} // namespace vh::junk

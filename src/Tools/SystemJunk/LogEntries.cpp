#include "Tools/SystemJunk/LogEntries.h"

#include "Core/Fold.h"
#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <array>

namespace vh::junk {

namespace {

constexpr int maxEntriesToLookAt = 1000;
constexpr int maxDepthToLookAt = 8;

constexpr std::array<std::string_view, 6> words{"log", "logs", "journal", "trace", "crash", "report"};
constexpr std::array<std::string_view, 3> endings{".log", ".out", ".err"};
constexpr std::array<std::string_view, 5> compressions{".gz", ".xz", ".bz2", ".zst", ".old"};
/// A database is a program's memory, whatever it is called.
constexpr std::array<std::string_view, 4> databases{".db", ".sqlite", ".sqlite3", ".tdb"};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Every byte beyond ASCII counts, so that "catálogo" holds no "log".
bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}

bool endsInOneOf(std::string_view name, const auto& list) {
    return std::ranges::any_of(list, [&](std::string_view ending) { return name.ends_with(ending); });
}

/// Without what rotating and compressing append: "a.log.2.gz" becomes "a.log".
std::string_view withoutRotation(std::string_view name) {
    for (;;) {
        const size_t dot = name.rfind('.');
        if (dot == std::string_view::npos || dot == 0)
            return name;
        const auto ending = name.substr(dot);
        const bool isNumber = ending.size() > 1 && std::ranges::all_of(ending.substr(1), isDigit);
        if (!isNumber && std::ranges::find(compressions, ending) == compressions.end())
            return name;
        name = name.substr(0, dot);
    }
}

bool holdsWord(std::string_view name, std::string_view word) {
    for (size_t at = name.find(word); at != std::string_view::npos; at = name.find(word, at + 1)) {
        const size_t end = at + word.size();
        if ((at == 0 || !isLetter(name[at - 1])) && (end == name.size() || !isLetter(name[end])))
            return true;
    }
    return false;
}

class LogCheck {
public:
    /// True when there is at least one file and the names of all say logs.
    bool accepts(const std::string& path) { return acceptsContents(FolderReader(path), 0) && filesSeen_ > 0; }

private:
    bool acceptsContents(FolderReader folder, int depth) {
        while (const auto entry = folder.next()) {
            if (++entriesSeen_ > maxEntriesToLookAt)
                return false;
            if (nameSaysLogs(entry->name))
                ++filesSeen_;
            else if (entry->type != FileType::folder || depth == maxDepthToLookAt ||
                     !acceptsContents(FolderReader(folder, entry->name), depth + 1))
                return false;
        }
        return true;
    }

    int entriesSeen_ = 0;
    int filesSeen_ = 0;
};

} // namespace

bool nameSaysLogs(std::string_view bytes) {
    const std::string folded = foldCase(bytes);
    const std::string_view name = withoutRotation(folded);
    if (endsInOneOf(name, databases))
        return false;
    return endsInOneOf(name, endings) ||
           std::ranges::any_of(words, [&](std::string_view word) { return holdsWord(name, word); });
}

bool consistsOfLogs(const std::string& path, FileType type) {
    if (nameSaysLogs(std::string_view(path).substr(path.rfind('/') + 1)))
        return true;
    if (type != FileType::folder)
        return false;
    try {
        return LogCheck().accepts(path);
    } catch (const SystemError&) {
        return false; // what cannot be looked into is not known to be logs
    }
}

} // namespace vh::junk

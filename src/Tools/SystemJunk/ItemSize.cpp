#include "Tools/SystemJunk/ItemSize.h"

#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"

#include <limits>
#include <optional>
#include <vector>

namespace vh::junk {

namespace {

/// Folders held open one inside the other; those further up are closed and found again on the way back.
constexpr size_t maxOpenLevels = 32;

/// Goes down by names from open folders, since a path can grow longer than the system takes.
class FolderMeasure {
public:
    FolderMeasure(int maxEntries, const CancelToken& cancel) : entriesLeft_(maxEntries), cancel_(cancel) {}

    ItemSize measure(const std::string& path) {
        enter([&] { return FolderReader(path); });
        while (!levels_.empty() && entriesLeft_ > 0)
            goOn();
        size_.isWhole = size_.isWhole && levels_.empty();
        return size_;
    }

private:
    struct Level {
        std::optional<FolderReader> folder; ///< nothing when closed to save descriptors
        std::vector<std::string> waiting;   ///< folders inside that are still to be entered
        bool isHidden = false;              ///< it counts for the times alone
    };

    void goOn() {
        cancel_.throwIfCancelled();
        Level& level = levels_.back();
        if (level.waiting.empty())
            return leave();
        const std::string name = std::move(level.waiting.back());
        level.waiting.pop_back();
        const bool isHidden = level.isHidden || name.starts_with('.');
        enter([&] { return FolderReader(*level.folder, name); }, isHidden);
    }

    /// A folder that vanished or may not be read is left out.
    void enter(const auto& open, bool isHidden = false) {
        try {
            Level level{open(), {}, isHidden};
            take(level.folder->usage());
            count(level);
            if (level.waiting.empty())
                return;
            levels_.push_back(std::move(level));
        } catch (const SystemError&) {
            size_.isWhole = false;
            return;
        }
        if (levels_.size() > maxOpenLevels)
            levels_[levels_.size() - 1 - maxOpenLevels].folder.reset();
    }

    void count(Level& level) {
        try {
            while (entriesLeft_ > 0) {
                const auto entry = level.folder->next();
                if (!entry)
                    return;
                countEntry(*entry, level, level.isHidden || entry->name.starts_with('.'));
            }
        } catch (const SystemError&) {
            size_.isWhole = false; // what was read so far counts
        }
    }

    void countEntry(const FolderReader::Entry& entry, Level& level, bool isHidden) {
        --entriesLeft_;
        if (entry.type == FileType::file) {
            const auto usage = level.folder->usage(entry.name);
            take(usage);
            add(usage && !isHidden ? usage->byteSize : 0);
        } else if (entry.type == FileType::folder) {
            level.waiting.emplace_back(entry.name);
        } else if (!isHidden && (entry.type == FileType::socket || entry.type == FileType::other)) {
            size_.holdsEndpoint = true;
        }
    }

    void take(const std::optional<FileUsage>& usage) {
        if (!usage)
            return;
        size_.usedSeconds = std::max(size_.usedSeconds, usage->usedSeconds);
        size_.touchedSeconds = std::max(size_.touchedSeconds, usage->touchedSeconds);
    }

    /// Sparse files can be as large as the type allows.
    void add(int64_t bytes) {
        size_.bytes += std::min(bytes, std::numeric_limits<int64_t>::max() / 1024 - size_.bytes);
    }

    void leave() {
        const std::optional<FolderReader> inner = std::move(levels_.back().folder);
        levels_.pop_back();
        if (levels_.empty() || levels_.back().folder)
            return;
        try {
            levels_.back().folder.emplace(*inner, "..");
        } catch (const SystemError&) {
            levels_.clear(); // the way back is gone
        }
    }

    int entriesLeft_;
    const CancelToken& cancel_;
    std::vector<Level> levels_;
    ItemSize size_;
};

} // namespace

ItemSize measureFolder(const std::string& path, int maxEntries, const CancelToken& cancel) {
    return FolderMeasure(maxEntries, cancel).measure(path);
}

} // namespace vh::junk

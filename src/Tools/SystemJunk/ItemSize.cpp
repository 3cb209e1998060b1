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
        return size_;
    }

private:
    struct Level {
        std::optional<FolderReader> folder; ///< nothing when closed to save descriptors
        std::vector<std::string> waiting;   ///< folders inside that are still to be entered
    };

    void goOn() {
        cancel_.throwIfCancelled();
        Level& level = levels_.back();
        if (level.waiting.empty())
            return leave();
        const std::string name = std::move(level.waiting.back());
        level.waiting.pop_back();
        enter([&] { return FolderReader(*level.folder, name); });
    }

    /// A folder that vanished or may not be read is left out.
    void enter(const auto& open) {
        try {
            Level level{open(), {}};
            count(level);
            if (level.waiting.empty())
                return;
            levels_.push_back(std::move(level));
        } catch (const SystemError&) {
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
                if (!entry->name.starts_with('.'))
                    countEntry(*entry, level);
            }
        } catch (const SystemError&) {
            return; // what was read so far counts
        }
    }

    void countEntry(const FolderReader::Entry& entry, Level& level) {
        --entriesLeft_;
        if (entry.type == FileType::file)
            add(level.folder->byteSize(entry.name).value_or(0));
        else if (entry.type == FileType::folder)
            level.waiting.emplace_back(entry.name);
        else if (entry.type == FileType::socket || entry.type == FileType::other)
            size_.holdsEndpoint = true;
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

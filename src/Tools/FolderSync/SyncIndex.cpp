#include "Tools/FolderSync/SyncIndex.h"

#include "Core/ErrorMessage.h"
#include "Platform/FileIdentity.h"
#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace vh::sync {

namespace {

constexpr size_t blockBytes = 1u << 20;

Date dateOf(const FileMetadata::Time& time) {
    return Date(std::chrono::seconds(time.seconds)) +
           std::chrono::floor<std::chrono::microseconds>(std::chrono::nanoseconds(time.nanoseconds));
}

/// What leaves a destination lands there, which may lie in the destination itself.
bool isTrashOfVolume(std::string_view name) {
    constexpr std::string_view begin = ".Trash-";
    return name == ".Trash" || (name.starts_with(begin) && name.size() > begin.size() &&
                                name.find_first_not_of("0123456789", begin.size()) == std::string_view::npos);
}

bool isTopOfVolume(const std::string& folder) {
    const auto own = identityOf(folder + "/."), above = identityOf(folder + "/..");
    return own && above && (own->device != above->device || own == above);
}

class Walk {
public:
    Walk(SyncIndex& index, const std::string& root, const CancelToken& cancel)
        : index_(index), cancel_(cancel), isVolume_(isTopOfVolume(root)), root_(root) {}

    /// Throws SystemError when `folder` cannot be listed.
    void walk(FolderReader& folder) {
        cancel_.throwIfCancelled();
        std::vector<std::string> names;
        std::exception_ptr failure; // what was listed until then is there nevertheless
        try {
            while (const auto entry = folder.next())
                if (entry->type == FileType::socket || entry->type == FileType::other)
                    leaveOut(*entry);
                else
                    names.emplace_back(entry->name);
        } catch (const SystemError&) {
            failure = std::current_exception();
        }
        std::ranges::sort(names);
        const size_t length = path_.size();
        for (const std::string& name : names) {
            if (isTrashOfVolume(name) || (isVolume_ && length == 0 && name == "lost+found"))
                continue;
            path_.append(length > 0 ? "/" : "").append(name);
            guarded([&] { visit(folder, name); });
            path_.resize(length);
        }
        if (failure)
            std::rethrow_exception(failure);
    }

    const SyncLeftOut& leftOut() const { return leftOut_; }

private:
    void leaveOut(const FolderReader::Entry& entry) {
        namespace fs = std::filesystem;
        std::error_code error;
        const bool isPipe =
            entry.type == FileType::other &&
            fs::symlink_status(fs::path(root_) / path_ / entry.name, error).type() == fs::file_type::fifo;
        ++(entry.type == FileType::socket ? leftOut_.sockets : isPipe ? leftOut_.pipes : leftOut_.devices);
    }

    template <class Work>
    void guarded(Work work) {
        try {
            work();
        } catch (const SystemError& error) {
            index_.addUnreadable(path_, reasonOf(error));
        }
    }

    void visit(const FolderReader& folder, const std::string& name) {
        const auto stamp = folder.stamp(name);
        if (!stamp)
            return;
        const bool isLeftOut = path_.ends_with(".DS_Store");
        if (stamp->type == FileType::folder) {
            if (!isLeftOut)
                index_.add({path_, {}, 0, dateOf(stamp->modified), SyncIndex::Type::folder});
            FolderReader inner(folder, name);
            walk(inner);
        } else if (stamp->type == FileType::link && !isLeftOut) {
            index_.add({path_, folder.linkTarget(name), 0, distantPast, SyncIndex::Type::link});
        } else if (stamp->type == FileType::file && !isLeftOut) {
            index_.add({path_, {}, stamp->byteSize, dateOf(stamp->modified), SyncIndex::Type::file});
        }
    }

    SyncIndex& index_;
    const CancelToken& cancel_;
    const bool isVolume_;
    const std::string& root_;
    SyncLeftOut leftOut_;
    std::string path_; ///< of what is being visited
};

} // namespace

bool SyncIndex::comesBefore(std::string_view one, std::string_view other) {
    const size_t common = std::min(one.size(), other.size());
    size_t at = 0;
    while (at < common && one[at] == other[at])
        ++at;
    if (at == common)
        return one.size() < other.size();
    const auto rank = [](char byte) {
        return byte == '/' ? 0 : static_cast<unsigned char>(byte);
    };
    return rank(one[at]) < rank(other[at]);
}

SyncIndex::SyncIndex(const std::vector<SyncEntry>& entries) {
    items_.reserve(entries.size());
    for (const SyncEntry& each : entries)
        add({each.relative, each.link ? std::string_view(*each.link) : std::string_view(), each.size,
             each.mtime,
             each.link          ? Type::link
             : each.isDirectory ? Type::folder
                                : Type::file});
    std::ranges::stable_sort(items_, comesBefore, &Item::relative);
    const auto rest = std::ranges::unique(items_, {}, &Item::relative);
    items_.erase(rest.begin(), rest.end());
}

std::vector<SyncEntry> SyncIndex::entries() const {
    std::vector<SyncEntry> entries;
    entries.reserve(items_.size());
    for (const Item& each : items_)
        entries.push_back({std::string(each.relative), each.type == Type::folder, each.size, each.modified,
                           each.type == Type::link ? std::optional<std::string>(each.link) : std::nullopt});
    return entries;
}

void SyncIndex::add(Item item) {
    item.relative = keep(item.relative);
    item.link = keep(item.link);
    items_.push_back(item);
}

void SyncIndex::addUnreadable(std::string relative, Message reason) {
    unreadable_.push_back({std::move(relative), std::move(reason)});
}

std::string_view SyncIndex::keep(std::string_view text) {
    if (text.empty())
        return {};
    if (text.size() > room_ - used_) {
        room_ = std::max(blockBytes, text.size());
        used_ = 0;
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(room_));
    }
    char* const kept = blocks_.back().get() + used_;
    std::memcpy(kept, text.data(), text.size());
    used_ += text.size();
    return {kept, text.size()};
}

SyncIndex indexOf(const std::string& root, const CancelToken& cancel) {
    SyncIndex index;
    FolderReader top(root);
    Walk walk(index, root, cancel);
    walk.walk(top);
    index.setLeftOut(walk.leftOut());
    return index;
}

} // namespace vh::sync

#pragma once

#include "Core/Message.h"
#include "Platform/CancelToken.h"
#include "Tools/FolderSync/SyncPlan.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vh::sync {

/// All items of a tree, compactly: some 60 bytes and the path for each. They lie in the order of a walk: by path as if
/// "/" came before all other characters, so that what a folder holds follows it at once.
class SyncIndex {
public:
    enum class Type : unsigned char { file, folder, link };
    struct Item {
        std::string_view relative; ///< lives as long as the index
        std::string_view link;     ///< what it says
        int64_t size = 0;
        Date modified = distantPast;
        Type type = Type::file;
    };

    SyncIndex() = default;
    /// Of what another machine tells, in any order.
    explicit SyncIndex(const std::vector<SyncEntry>& entries);

    const std::vector<Item>& items() const { return items_; }
    std::vector<SyncEntry> entries() const;
    /// An item or a folder whose contents are unknown, and why.
    struct Unreadable {
        std::string relative;
        Message reason;
    };
    const std::vector<Unreadable>& unreadable() const { return unreadable_; }
    const SyncLeftOut& leftOut() const { return leftOut_; }

    /// For who walks a tree: items come in order. The texts are copied.
    void add(Item item);
    void addUnreadable(std::string relative, Message reason);
    void setLeftOut(const SyncLeftOut& leftOut) { leftOut_ = leftOut; }

    static bool comesBefore(std::string_view one, std::string_view other);

private:
    std::string_view keep(std::string_view text);

    std::vector<Item> items_;
    std::vector<Unreadable> unreadable_;
    SyncLeftOut leftOut_;
    std::vector<std::unique_ptr<char[]>> blocks_; ///< of the texts
    size_t used_ = 0;
    size_t room_ = 0;
};

/// Walks a tree without following links below it. Left out, and counted, are pipes, sockets and devices; and whatever ends in
/// ".DS_Store", and a volume's Trash and "lost+found". Throws SystemError when `root` cannot be listed, or Cancelled.
SyncIndex indexOf(const std::string& root, const CancelToken& cancel = {});

} // namespace vh::sync

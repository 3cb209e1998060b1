#include "Tools/FolderSync/SyncNames.h"

#include "Core/Fold.h"
#include "Core/Printable.h"
#include "Platform/FolderReader.h"
#include "Platform/PathParts.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>
#include <vector>

namespace vh::sync {

namespace {

using Item = SyncIndex::Item;
using Type = SyncIndex::Type;

size_t nameIn(std::string_view path) {
    const size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? 0 : slash + 1;
}

std::string inOtherCase(std::string_view path) {
    std::string other(path);
    for (size_t at = nameIn(path); at < other.size(); ++at)
        if (const auto byte = static_cast<unsigned char>(other[at]); byte < 0x80)
            other[at] = static_cast<char>(std::islower(byte) ? std::toupper(byte) : std::tolower(byte));
    return other;
}

bool holds(const SyncIndex& index, std::string_view relative) {
    const auto& items = index.items();
    const auto found = std::ranges::lower_bound(items, relative, SyncIndex::comesBefore, &Item::relative);
    return found != items.end() && found->relative == relative;
}

std::optional<FolderReader::Stamp> stampOf(const std::string& root, std::string_view relative) {
    try {
        const size_t name = nameIn(relative);
        return FolderReader(root + std::string(relative.substr(0, name))).stamp(relative.substr(name));
    } catch (const SystemError&) {
        return std::nullopt;
    }
}

/// Names by what a case-blind folder makes of them.
class Names {
public:
    /// The name that was first; this one when it is.
    const std::string& add(std::string_view relative) {
        return names_.try_emplace(keyOf(relative), relative).first->second;
    }
    /// As the folder above is called when the item itself is in none of the names.
    std::string of(std::string_view relative) const {
        if (const auto found = names_.find(keyOf(relative)); found != names_.end())
            return found->second;
        const size_t name = nameIn(relative);
        return name == 0 ? std::string(relative)
                         : of(relative.substr(0, name - 1)) + std::string(relative.substr(name - 1));
    }

private:
    /// Letter by letter as volumes do it, so that "ß" is not "ss"; bytes that are no text are themselves.
    static std::string keyOf(std::string_view name) {
        const auto letters = std::ranges::count_if(name, [](char byte) { return (byte & 0xC0) != 0x80; });
        const std::string folded = foldCase(name);
        return folded.find("\uFFFD") == std::string::npos ? folded + '\0' + std::to_string(letters)
                                                          : std::string(name);
    }
    std::unordered_map<std::string, std::string> names_;
};

} // namespace

bool isCaseBlind(const std::string& root, const SyncIndex& index) {
    const std::string folder = root.ends_with('/') ? root : root + '/';
    for (const Item& each : index.items()) {
        const std::string other = inOtherCase(each.relative);
        if (other == each.relative || holds(index, other))
            continue;
        // Not by their identity: some file systems number the names they are asked for.
        const auto one = stampOf(folder, each.relative), two = stampOf(folder, other);
        return one && two && one->type == two->type && one->byteSize == two->byteSize &&
               one->modified == two->modified;
    }
    return false;
}

void matchCaseBlind(SyncIndex& source, SyncIndex& destination) {
    Names names;
    std::vector<SyncEntry> kept;
    std::vector<SyncIndex::Unreadable> unreadable = source.unreadable();
    std::string lost; // a folder whose place another item has
    for (SyncEntry& each : source.entries()) {
        if (!lost.empty() && isBelow(each.relative, lost))
            continue;
        const std::string& first = names.add(each.relative);
        if (first == each.relative) {
            kept.push_back(std::move(each));
            continue;
        }
        const auto holder =
            std::ranges::lower_bound(kept, first, SyncIndex::comesBefore, &SyncEntry::relative);
        if (each.isDirectory && holder->isDirectory)
            continue; // what is in both comes together there
        if (each.isDirectory)
            lost = each.relative;
        unreadable.push_back(
            {each.relative, {"folder-sync.problem.case-twin-of", {{"name", printable(first)}}}});
    }
    for (const SyncIndex::Unreadable& each : unreadable)
        names.add(each.relative);
    const SyncLeftOut leftOut = source.leftOut();
    source = SyncIndex(kept);
    source.setLeftOut(leftOut);
    for (SyncIndex::Unreadable& each : unreadable)
        source.addUnreadable(std::move(each.relative), std::move(each.reason));
    std::vector<SyncEntry> theirs = destination.entries();
    for (SyncEntry& each : theirs)
        each.relative = names.of(each.relative);
    destination = SyncIndex(theirs);
}

} // namespace vh::sync

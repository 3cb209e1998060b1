#include "Tools/SystemJunk/JunkCleaner.h"

#include "Core/ItemRemoval.h"
#include "Platform/Removal.h"

#include <algorithm>

namespace vh::junk {

namespace {

using Kind = JunkCleanerError::Kind;

/// Without the path, which the line begins with anyway and whose words would be taken for the reason's.
std::string descriptionOf(const std::exception& error) {
    const auto* system = dynamic_cast<const SystemError*>(&error);
    return system != nullptr ? system->reason() : error.what();
}

void add(CleanResult& result, CleanedItem item) {
    if (item.failure) {
        result.errors.push_back(item.path + ": " + *item.failure);
    } else {
        ++result.removedCount;
        result.freedBytes += item.byteSize;
    }
    result.items.push_back(std::move(item));
}

} // namespace

JunkCleaner::JunkCleaner(const SystemJunkConfiguration& configuration)
    : configuration_(configuration), guard_(configuration) {}

CleanResult JunkCleaner::clean(const ScanReport& report, const CleanSelection& selection,
                               const JobControl& control) {
    if (selection.itemIDs.empty())
        throw JunkCleanerError(Kind::emptySelection);
    CleanResult result;
    for (const ScanItem& item : report.items) {
        if (!selection.itemIDs.contains(item.id))
            continue;
        if (control.cancel.isCancelled())
            break;
        CleanedItem cleaned{item.path, item.byteSize};
        try {
            cleaned.landed = remove(item, selection.method);
        } catch (const std::exception& error) {
            cleaned.failure = descriptionOf(error);
            cleaned.isGoneInPart = dynamic_cast<const PartlyRemoved*>(&error) != nullptr;
        }
        add(result, std::move(cleaned));
    }
    return result;
}

bool JunkCleaner::isRoot(const std::string& path) const {
    const auto& roots = configuration_.allowlist.allowedPrefixes();
    return std::ranges::find(roots, path) != roots.end();
}

std::optional<std::string> JunkCleaner::remove(const ScanItem& item, RemovalMethod method) {
    const std::string path = PathAllowlist::normalize(item.path);
    configuration_.allowlist.assertAllowed(item.path);
    if (isRoot(path))
        throw JunkCleanerError(Kind::rootDeletionForbidden, path);
    const std::optional<size_t> root = guard_.rootOf(path);
    if (!root)
        throw PathAllowlistError(item.path);
    if (const auto status = statusOf(path)) {
        if (auto reason = guard_.reasonToKeep(path, *root, *status))
            throw std::move(*reason);
        if (item.identity && status->identity != item.identity)
            throw JunkCleanerError(Kind::changedSinceScan, path);
    }
    return removeItem(path, method, item.identity);
}

} // namespace vh::junk

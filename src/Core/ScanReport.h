#pragma once

#include "Core/Date.h"
#include "Core/Describe.h"
#include "Core/RemovalMethod.h"
#include "Core/Uuid.h"
#include "Platform/FileIdentity.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh {

/// Whether something was in use of late.
enum class Recency {
    settled,
    recent,        ///< used a moment ago: shown, and taken only by who means it
    recentInShared ///< in a folder that is everybody's, and used since long enough ago: shown only to who asks
};

/// Something a scan found that can be removed.
struct ScanItem {
    Uuid id;          ///< made at scan time
    std::string path; ///< absolute
    int64_t byteSize = 0;
    std::string category;
    std::optional<FileIdentity> identity; ///< what lay at the path when it was scanned; never stored
    Recency recency = Recency::settled;
};

struct ScanReport {
    std::string moduleID;
    std::vector<ScanItem> items;
    Date scannedAt;

    /// Ends the program when the sum does not fit 64 bits: no disk holds that much.
    int64_t totalBytes() const;
    /// Without what was in use of late: what may go when no person chooses.
    ScanReport settled() const;
    /// Without what others may still need in a shared folder: what is shown to who did not ask for more.
    ScanReport withoutShared() const;
};

/// Which items of a report to remove, and how.
struct CleanSelection {
    std::set<Uuid> itemIDs;
    RemovalMethod method = RemovalMethod::trash;

    static CleanSelection all(const ScanReport& report, RemovalMethod method);
};

/// What became of one selected item.
struct CleanedItem {
    std::string path;
    int64_t byteSize = 0;
    std::optional<std::string> landed;  ///< where it lies in the Trash now
    std::optional<std::string> failure; ///< why it is still there
    bool isGoneInPart = false;          ///< still there, but not all of it
};

struct CleanResult {
    int64_t removedCount = 0;
    int64_t freedBytes = 0;
    std::vector<std::string> errors; ///< one line per item that failed, in item order
    std::vector<CleanedItem> items;  ///< every selected item that was tried, in item order
};

template <>
inline constexpr auto describe<Recency> = enumeration<Recency>({{Recency::settled, "settled"},
                                                                {Recency::recent, "recent"},
                                                                {Recency::recentInShared, "recentInShared"}});

template <>
inline constexpr auto describe<ScanItem> = record(field("id", &ScanItem::id), field("path", &ScanItem::path),
                                                  field("byteSize", &ScanItem::byteSize),
                                                  field("category", &ScanItem::category),
                                                  field("recency", &ScanItem::recency).mayBeMissing());

template <>
inline constexpr auto describe<ScanReport> = record(field("moduleID", &ScanReport::moduleID),
                                                    field("items", &ScanReport::items),
                                                    field("scannedAt", &ScanReport::scannedAt));

template <>
inline constexpr auto describe<CleanSelection> = record(field("itemIDs", &CleanSelection::itemIDs),
                                                        field("method", &CleanSelection::method));

template <>
inline constexpr auto describe<CleanedItem> = record(field("path", &CleanedItem::path),
                                                     field("byteSize", &CleanedItem::byteSize),
                                                     field("landed", &CleanedItem::landed),
                                                     field("failure", &CleanedItem::failure),
                                                     field("isGoneInPart", &CleanedItem::isGoneInPart));

template <>
inline constexpr auto describe<CleanResult> = record(field("removedCount", &CleanResult::removedCount),
                                                     field("freedBytes", &CleanResult::freedBytes),
                                                     field("errors", &CleanResult::errors),
                                                     field("items", &CleanResult::items));

} // namespace vh

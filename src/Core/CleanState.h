#pragma once

#include <string_view>

/// The states of rows in a run's file list.
namespace vh::cleanState {

inline constexpr const char* trashed = "trashed";             ///< lies in the Trash at the row's place
inline constexpr const char* trash = "trash";                 ///< the same, of a sync
inline constexpr const char* deleted = "deleted";             ///< gone for good
inline constexpr const char* added = "new";                   ///< by a sync
inline constexpr const char* changed = "changed";             ///< by a sync
inline constexpr const char* failed = "failed";               ///< still there
inline constexpr const char* deletedInPart = "deletedInPart"; ///< still there, but not all of it
inline constexpr const char* restored = "restored";           ///< put back by an undo
inline constexpr const char* inPlace = "inPlace";             ///< there when the run was killed at this item
inline constexpr const char* doing =
    "doing"; ///< being deleted when the run was killed: some of it may be gone
inline constexpr const char* unknown = "unknown"; ///< what a killed run did to it cannot be found out

inline bool isTrashed(std::string_view state) {
    return state == trashed || state == trash;
}

} // namespace vh::cleanState

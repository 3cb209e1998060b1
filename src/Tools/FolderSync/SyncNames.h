#pragma once

#include "Tools/FolderSync/SyncIndex.h"

#include <string>

namespace vh::sync {

/// Whether names that differ in case alone are one item in this folder, seen by what lies there. Changes nothing; an
/// empty folder says no.
bool isCaseBlind(const std::string& root, const SyncIndex& index);

/// For a destination that is case-blind: gives what lies there the names that the source has for it, and takes out of the
/// source, as unreadable, whatever would land in the place of another of its items.
void matchCaseBlind(SyncIndex& source, SyncIndex& destination);

} // namespace vh::sync

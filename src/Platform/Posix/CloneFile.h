#pragma once

#include "Platform/FileDescriptor.h"

namespace vh {

/// Makes the empty file `to` share all blocks of `from`. False where that cannot be done; nothing is changed then.
bool cloneContents(const FileDescriptor& from, const FileDescriptor& to);

} // namespace vh

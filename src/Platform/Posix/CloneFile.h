#pragma once

#include "Platform/CopyFolder.h"

namespace vh {

/// Makes the empty file `to` share all blocks of `from`. Where that cannot be done, nothing is changed.
PartialFile::Cloned cloneContents(const FileDescriptor& from, const FileDescriptor& to);

} // namespace vh

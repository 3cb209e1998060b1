#pragma once

#include "Platform/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace vh {

/// Copies a few MiB from where both files stand, inside the kernel where it can. How many bytes, 0 at the end. Throws
/// SystemError that names `path`.
size_t copyPiece(const FileDescriptor& from, const FileDescriptor& to, const std::string& path);

/// The same from and to `offset`, at most `most` bytes, wherever both files stand.
size_t copyPieceAt(const FileDescriptor& from, const FileDescriptor& to, int64_t offset, size_t most,
                   const std::string& path);

} // namespace vh

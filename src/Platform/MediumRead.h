#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vh {

class FileDescriptor;

/// Writes out all that the system still holds back for the volume of this folder. What fails shows when it is read.
void flushVolume(const std::string& folder);

enum class ReadFrom {
    medium, ///< what of the file lies in memory is written out and let go first, and again once it was read
    anywhere
};

/// Begins to bring a file into memory, from the medium if so asked; who asks for many at once and reads them then does
/// not wait for each.
void beginReading(const FileDescriptor& file, ReadFrom where);

/// Reads a whole file in blocks of 1 MiB. Ends early when `take` says no. Throws SystemError.
void readBlocks(const std::string& path, ReadFrom where,
                const std::function<bool(std::string_view block)>& take);
/// The same of an open file, from where it stands; `path` is for errors.
void readBlocks(const FileDescriptor& file, const std::string& path, ReadFrom where,
                const std::function<bool(std::string_view block)>& take);

} // namespace vh

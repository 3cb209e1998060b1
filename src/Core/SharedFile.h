#pragma once

#include "Platform/FileLock.h"
#include "Platform/GrowingFile.h"

#include <optional>
#include <string>
#include <string_view>

namespace vh {

/// A file that several processes read and replace whole. What cannot be understood in it is kept as "<file>.damaged"
/// when it is first written over. One thread at a time; all throws SystemError.
class SharedFile {
public:
    /// The file and its folder are made by the first write.
    explicit SharedFile(std::string path) : path_(std::move(path)) {}

    /// Its text when it is not the one given last, as it is not at first; empty when there is no file.
    std::optional<std::string> news();
    /// For the reader to say of the text that news gave: nothing in it could be understood.
    void setDamaged(bool damaged) { isDamaged_ = damaged && open_; }
    bool isDamaged() const { return isDamaged_; }

    /// Who changes the file holds this from reading to writing. Waits for it.
    FileLock lock() const;
    /// Under the lock, with all news taken in. What is written is news too.
    void write(std::string_view text);

    const std::string& path() const { return path_; }

private:
    const std::string path_;
    bool isRead_ = false;
    bool isDamaged_ = false;
    std::optional<GrowingFile>
        open_; // what was read last: as long as it is open, no other file looks like it
    FileStamp stamp_;
};

} // namespace vh

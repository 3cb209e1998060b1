#pragma once

#include "Platform/FileLock.h"

#include <optional>
#include <string>
#include <string_view>

namespace vh {

class UserDefaults;

/// Where the run log and its file lists lie: a folder of the person's choice.
struct DatabaseLocation {
    static constexpr std::string_view key = "database.folder";
    /// "<data>/Varnholt". Throws SystemError when the user has no home.
    static std::string defaultFolder();
    /// The stored folder, else the default one.
    static std::string folder(const UserDefaults& defaults);
};

/// Keeps other processes from writing to the database, and the database from moving, as long as it lives.
/// Waits; throws SystemError when the folder cannot be used. Not recursive.
class DatabaseLock {
public:
    explicit DatabaseLock(const UserDefaults& defaults);
    const std::string& folder() const { return folder_; }

private:
    void take();
    std::string folder_;
    std::optional<FileLock> lock_;
};

} // namespace vh

#pragma once

#include <stdexcept>
#include <string>

namespace vh::sync {

/// Why two folders cannot be compared.
class SyncError : public std::runtime_error {
public:
    enum class Kind { missing, nested };

    static SyncError missing(const std::string& path) {
        return {Kind::missing, "Folder not found: " + path, path};
    }
    static SyncError nested() {
        return {Kind::nested, "Source and destination must not contain each other.", {}};
    }

    const Kind kind;
    const std::string path; ///< of what is missing

private:
    SyncError(Kind what, const std::string& text, std::string where)
        : std::runtime_error(text), kind(what), path(std::move(where)) {}
};

} // namespace vh::sync

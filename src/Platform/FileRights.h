#pragma once

#include <cstdint>
#include <memory>

namespace vh {

/// While it lives, this thread opens, makes, renames and removes files with the rights of one user alone, whoever the
/// process runs as; the process itself and its other threads keep theirs. Throws SystemError when the process may not,
/// or knows no such user.
class FileRights {
public:
    explicit FileRights(uint32_t user);
    ~FileRights();
    FileRights(const FileRights&) = delete;
    FileRights& operator=(const FileRights&) = delete;

private:
    struct Before;
    std::unique_ptr<Before> before_; ///< nothing when the process runs as that user anyway
};

} // namespace vh

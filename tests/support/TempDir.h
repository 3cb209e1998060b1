#pragma once

#include <string>
#include <string_view>

namespace vh::test {

/// A folder of its own under the system's temporary one, by its real path; removed at the end with all that is in it.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

private:
    std::string path_;
};

} // namespace vh::test

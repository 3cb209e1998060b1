#include "support/TempDir.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <ftw.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace vh::test {

namespace {

// Not the product's own removal, which tests may be about to show broken.
int makeReadable(const char* path, const struct stat*, int type, struct FTW*) {
    if (type == FTW_D || type == FTW_DNR)
        ::chmod(path, 0700);
    return 0;
}

int removeEntry(const char* path, const struct stat*, int, struct FTW*) {
    ::remove(path);
    return 0;
}

} // namespace

TempDir::TempDir() {
    const std::string folder = std::filesystem::canonical(std::filesystem::temp_directory_path());
    std::string name = folder + "/varnholt-test-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
}

TempDir::~TempDir() {
    constexpr int openFolders = 16;
    ::nftw(path_.c_str(), makeReadable, openFolders, FTW_PHYS);
    ::nftw(path_.c_str(), removeEntry, openFolders, FTW_PHYS | FTW_DEPTH);
    if (::access(path_.c_str(), F_OK) == 0)
        std::fprintf(stderr, "A test left something behind that cannot be removed: %s\n", path_.c_str());
}

} // namespace vh::test

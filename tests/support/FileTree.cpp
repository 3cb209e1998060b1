#include "support/FileTree.h"

#include "Platform/Files.h"

#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace vh::test {

namespace fs = std::filesystem;

std::map<std::string, std::string> treeOf(const std::string& folder) {
    std::map<std::string, std::string> tree;
    for (const fs::directory_entry& each : fs::recursive_directory_iterator(folder)) {
        const std::string path = each.path().string();
        struct stat status {};
        ::lstat(path.c_str(), &status);
        std::string attribute(64, '\0');
        const ssize_t size = ::lgetxattr(path.c_str(), "user.note", attribute.data(), attribute.size());
        attribute.resize(size > 0 ? static_cast<size_t>(size) : 0);
        tree[path.substr(folder.size() + 1)] =
            fmt::format("{:o} {}:{} {}.{:09} {} ", status.st_mode, status.st_uid, status.st_gid,
                        status.st_mtim.tv_sec, status.st_mtim.tv_nsec, attribute) +
            (S_ISREG(status.st_mode)   ? readFile(path)
             : S_ISLNK(status.st_mode) ? fs::read_symlink(path).string()
                                       : "");
    }
    return tree;
}

namespace {

std::string bytesFor(size_t count) {
    std::string bytes(count, '\0');
    for (size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<char>(i * 2654435761u >> 13);
    return bytes;
}

void makeSparse(const std::string& path) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT, 0600);
    if (::pwrite(file, "head", 4, 0) != 4 || ::pwrite(file, "late", 4, 6 << 20) != 4 ||
        ::ftruncate(file, 9 << 20) != 0)
        throw std::runtime_error(path);
    ::close(file);
}

} // namespace

void setTime(const std::string& path, int64_t seconds) {
    const timespec times[2]{{seconds, 5}, {seconds, 123456789}};
    ::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW);
}

void growTree(const std::string& folder, size_t block) {
    fs::create_directories(folder + "/inner/deep");
    fs::create_directories(folder + "/empty folder");
    for (const auto& [name, size] : std::map<std::string, size_t>{{"empty", 0},
                                                                  {"small.txt", 10},
                                                                  {"inner/block", block},
                                                                  {"inner/blocks.bin", 2 * block + 77},
                                                                  {"inner/deep/not-\xff-text", 5000},
                                                                  {".hidden", 3}})
        writeFileAtomically(folder + "/" + name, bytesFor(size));
    makeSparse(folder + "/inner/sparse");
    fs::permissions(folder + "/small.txt", fs::perms(0751));
    ::setxattr((folder + "/small.txt").c_str(), "user.note", "kept", 4, 0);
    ::setxattr((folder + "/inner").c_str(), "user.note", "too", 3, 0);
    setTime(folder + "/small.txt", -86400);
    setTime(folder + "/inner/blocks.bin", 1700000000);
    setTime(folder + "/inner", 1600000000);
}

} // namespace vh::test

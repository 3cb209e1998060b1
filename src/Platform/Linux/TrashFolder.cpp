#include "Platform/Linux/TrashFolder.h"

#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"

#include <fmt/format.h>
#include <unistd.h>

namespace vh {

namespace {

/// Opens a folder that must be one and not a link, making it when missing.
FileDescriptor openOrMake(const FileDescriptor& parent, const std::string& name, const std::string& path) {
    if (::mkdirat(parent.get(), name.c_str(), 0700) != 0 && errno != EEXIST)
        throwErrno(path);
    FileDescriptor folder = openAt(parent.get(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!folder)
        throwErrno(path);
    return folder;
}

TrashFolder openTrash(const FileDescriptor& trash, std::string path, std::string relativeTo) {
    FileDescriptor files = openOrMake(trash, "files", joinPath(path, "files"));
    FileDescriptor info = openOrMake(trash, "info", joinPath(path, "info"));
    return {std::move(path), std::move(relativeTo), std::move(files), std::move(info)};
}

FileDescriptor openOwn(const FileDescriptor& parent, const std::string& name, const std::string& path) {
    FileDescriptor trash = openOrMake(parent, name, path);
    if (statusOfOpen(trash, path).st_uid != ::geteuid())
        throw SystemError(path, "This Trash folder belongs to somebody else");
    return trash;
}

/// A Trash folder that an administrator made for all users counts only when it is sticky and no link.
FileDescriptor openShared(const FileDescriptor& top) {
    FileDescriptor shared = openAt(top.get(), ".Trash", O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    struct stat status {};
    if (shared && (::fstat(shared.get(), &status) != 0 || (status.st_mode & S_ISVTX) == 0))
        shared.reset();
    return shared;
}

} // namespace

std::string TrashFolder::homePath() {
    return joinPath(Folders::ofUser().data, "Trash");
}

TrashFolder TrashFolder::ofHome() {
    const std::string path = homePath();
    makeFolders(path);
    return openTrash(openPath(path, O_RDONLY | O_DIRECTORY), path, "");
}

TrashFolder TrashFolder::ofVolume(const std::string& topFolder) {
    const FileDescriptor top = openPath(topFolder, O_RDONLY | O_DIRECTORY);
    const std::string user = fmt::format("{}", ::geteuid());
    if (const FileDescriptor shared = openShared(top)) {
        const std::string path = joinPath(topFolder, ".Trash/" + user);
        try {
            return openTrash(openOwn(shared, user, path), path, topFolder);
        } catch (const SystemError&) {
            // By the Trash rules the user's own folder is tried next.
        }
    }
    const std::string name = ".Trash-" + user;
    const std::string path = joinPath(topFolder, name);
    return openTrash(openOwn(top, name, path), path, topFolder);
}

std::string baseOfTrash(const std::string& trashPath) {
    const PathParts parts = splitPath(trashPath);
    const PathParts above = splitPath(parts.folder);
    return above.name == ".Trash" ? above.folder : parts.folder;
}

} // namespace vh

#include "Platform/ServiceInstallation.h"

#include "Platform/Files.h"
#include "Platform/Module.h"
#include "Platform/PathParts.h"
#include "Platform/Process.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fmt/format.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace vh {

namespace {

constexpr const char* ownProgram = "/proc/self/exe";
/// A tree of its own, in which the program finds its modules at "../lib/varnholt".
constexpr const char* treeFolder = "/usr/local/libexec/varnholt";
constexpr std::array treeFolders{"/lib/varnholt", "/lib", "/bin", ""}; ///< of it, the innermost first
constexpr std::string_view programMark = "@program@";
constexpr mode_t folderMode = 0755, fileMode = 0644, programMode = 0755, othersWriting = 0022;

void makeSystemFolders(const std::string& path) {
    if (statusOf(path))
        return;
    makeSystemFolders(splitPath(path).folder);
    if (::mkdir(path.c_str(), folderMode) != 0 && errno != EEXIST)
        throwErrno(path);
}

/// A file that has other rights than it should, or is none, is replaced and not followed.
void writeSystemFile(const std::string& path, std::string_view bytes, mode_t mode) {
    makeSystemFolders(splitPath(path).folder);
    struct stat old {};
    const bool isThere = ::lstat(path.c_str(), &old) == 0;
    const bool isAsItShould = isThere && S_ISREG(old.st_mode) && (old.st_mode & 07777) == mode &&
                              old.st_uid == ::geteuid() && old.st_gid == ::getegid();
    if (isAsItShould && readFile(path) == bytes)
        return;
    if (isThere && !isAsItShould && ::unlink(path.c_str()) != 0)
        throwErrno(path);
    writeFileAtomically(path, bytes, mode);
}

void removeSystemFile(const std::string& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR)
        throwErrno(path);
}

/// Whether nobody but root can put something else at the path.
bool isRootsAlone(const std::string& path) {
    for (std::string each = path; !each.empty(); each.erase(each.rfind('/'))) {
        struct stat status {};
        if (::lstat(each.c_str(), &status) != 0 || status.st_uid != 0 ||
            (status.st_mode & othersWriting) != 0)
            return false;
    }
    return true;
}

/// Where the running program lies, when that and where its modules lie are places from which a service may be started.
std::optional<std::string> ownSystemPath(const ServiceInstallation& service) {
    std::error_code error;
    const std::string path = std::filesystem::read_symlink(ownProgram, error).string();
    const bool isInSystem = path.starts_with("/usr/") || path.starts_with("/opt/");
    const auto isSafe = [](std::string_view module) {
        return isRootsAlone(modulePath(module));
    };
    return isInSystem && isRootsAlone(path) && std::ranges::all_of(service.modules, isSafe)
               ? std::optional(path)
               : std::nullopt;
}

std::string filledIn(std::string_view text, const std::string& program) {
    std::string filled(text);
    for (size_t at = 0; (at = filled.find(programMark, at)) != std::string::npos; at += program.size())
        filled.replace(at, programMark.size(), program);
    return filled;
}

std::string copyPath(const ServiceInstallation& service) {
    return fmt::format("{}/bin/{}", treeFolder, service.program);
}

std::string modulePathInTree(std::string_view name) {
    return fmt::format("{}/lib/varnholt/{}.so", treeFolder, name);
}

/// What lay there already may be somebody else's.
void requireOurs(const std::string& folder) {
    struct stat status {};
    if (::lstat(folder.c_str(), &status) != 0)
        throwErrno(folder);
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid() || (status.st_mode & othersWriting) != 0)
        throw SystemError(folder, "Others may write here");
}

void copyTree(const ServiceInstallation& service, const std::string& root) {
    for (const std::string_view name : service.modules)
        writeSystemFile(root + modulePathInTree(name), readFile(modulePath(name)), fileMode);
    writeSystemFile(root + copyPath(service), readFile(ownProgram), programMode);
    for (const char* folder : treeFolders)
        requireOurs(root + treeFolder + folder);
}

void removeTree(const ServiceInstallation& service, const std::string& root) {
    removeSystemFile(root + copyPath(service));
    for (const std::string_view name : service.modules)
        removeSystemFile(root + modulePathInTree(name));
    for (const char* folder : treeFolders) // those that are empty by now
        ::rmdir((root + treeFolder + folder).c_str());
}

/// Where a tool is missing, or what it speaks to does not run, there is nobody to tell.
void tell(const std::vector<std::string>& command) {
    constexpr std::chrono::seconds limit{90};
    ProcessRequest request{command};
    request.timeLimit = limit;
    if (findProgram(command.front()))
        static_cast<void>(runProcess(request));
}

void tellSystem(const ServiceInstallation& service) {
    tell({"systemctl", "daemon-reload"});
    tell({"systemctl", "stop", service.unit});
    const std::string bus = "org.freedesktop.DBus";
    if (findProgram("busctl"))
        tell({"busctl", "--system", "call", bus, "/org/freedesktop/DBus", bus, "ReloadConfig"});
    else
        tell({"dbus-send", "--system", "--print-reply", "--dest=" + bus, "/org/freedesktop/DBus",
              bus + ".ReloadConfig"});
}

bool isPackaged(const ServiceInstallation& service, const std::string& root) {
    return statusOf(root + std::string(service.packageFile)).has_value();
}

} // namespace

void installService(const ServiceInstallation& service, const std::string& root) {
    // The person's own may be so strict that nobody could read the files.
    ::umask(othersWriting);
    if (!isPackaged(service, root)) {
        const auto systemPath = ownSystemPath(service);
        if (!systemPath)
            copyTree(service, root);
        for (const ServiceFile& file : service.files)
            writeSystemFile(root + std::string(file.path),
                            filledIn(file.text, systemPath.value_or(copyPath(service))), fileMode);
    }
    if (root.empty())
        tellSystem(service);
}

void uninstallService(const ServiceInstallation& service, const std::string& root) {
    if (isPackaged(service, root))
        throw std::runtime_error(fmt::format("{} came with a package and goes with it.", service.program));
    // What lets it be started goes first.
    for (size_t i = service.files.size(); i-- > 0;)
        removeSystemFile(root + std::string(service.files[i].path));
    if (root.empty())
        tellSystem(service);
    removeTree(service, root);
}

} // namespace vh

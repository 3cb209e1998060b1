#include "Platform/Folders.h"

#include "Platform/Files.h"
#include "Platform/Posix/PathParts.h"
#include "Platform/SystemError.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fmt/format.h>
#include <pwd.h>
#include <unistd.h>

namespace vh {

namespace {

/// Empty unless it is absolute: the base directory rules have a relative value ignored.
std::string absoluteVariable(const char* name) {
    const char* value = ::getenv(name);
    return value != nullptr && value[0] == '/' ? standardisedPath(value) : std::string();
}

std::string homeFolder() {
    if (std::string home = absoluteVariable("HOME"); !home.empty())
        return home;
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    const int code = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
    if (code != 0)
        throw SystemError(code, "home folder");
    if (found == nullptr || found->pw_dir == nullptr || found->pw_dir[0] != '/')
        throw SystemError("home folder", "This user has none");
    return standardisedPath(found->pw_dir);
}

bool isAnothers(const std::string& home) {
    const auto status = ::geteuid() == 0 ? statusOf(home) : std::nullopt;
    return status && status->owner != 0;
}

std::string orElse(std::string value, const std::string& otherwise) {
    return value.empty() ? otherwise : std::move(value);
}

} // namespace

Folders Folders::ofUser() {
    Folders folders;
    folders.home = homeFolder();
    folders.homeIsAnothers = isAnothers(folders.home);
    folders.caches = orElse(absoluteVariable("XDG_CACHE_HOME"), joinPath(folders.home, ".cache"));
    folders.logs = orElse(absoluteVariable("XDG_STATE_HOME"), joinPath(folders.home, ".local/state"));
    folders.data = orElse(absoluteVariable("XDG_DATA_HOME"), joinPath(folders.home, ".local/share"));
    folders.config = orElse(absoluteVariable("XDG_CONFIG_HOME"), joinPath(folders.home, ".config"));
    folders.temporary = orElse(absoluteVariable("TMPDIR"), "/tmp");
    folders.runtime = orElse(absoluteVariable("XDG_RUNTIME_DIR"),
                             joinPath(folders.temporary, fmt::format("varnholt-{}", ::geteuid())));
    return folders;
}

} // namespace vh

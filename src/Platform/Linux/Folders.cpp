#include "Platform/Folders.h"

#include "Platform/Files.h"
#include "Platform/PathParts.h"
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

std::string homeInDatabase(uint32_t user) {
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    const int code = ::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found);
    if (code != 0)
        throw SystemError(code, "home folder");
    if (found == nullptr || found->pw_dir == nullptr || found->pw_dir[0] != '/')
        throw SystemError("home folder", "This user has none");
    return standardisedPath(found->pw_dir);
}

std::string homeFolder() {
    std::string home = absoluteVariable("HOME");
    return home.empty() ? homeInDatabase(::geteuid()) : std::move(home);
}

bool isAnothers(const std::string& home) {
    const auto status = ::geteuid() == 0 ? statusOf(home) : std::nullopt;
    return status && status->owner != 0;
}

std::string orElse(std::string value, const std::string& otherwise) {
    return value.empty() ? otherwise : std::move(value);
}

/// Where the things of who lives there lie when no variable says otherwise.
Folders usualFolders(const std::string& home) {
    Folders folders;
    folders.home = home;
    folders.caches = joinPath(home, ".cache");
    folders.logs = joinPath(home, ".local/state");
    folders.data = joinPath(home, ".local/share");
    folders.config = joinPath(home, ".config");
    folders.temporary = "/tmp";
    return folders;
}

} // namespace

Folders Folders::ofUser() {
    Folders folders = usualFolders(homeFolder());
    folders.homeIsAnothers = isAnothers(folders.home);
    folders.caches = orElse(absoluteVariable("XDG_CACHE_HOME"), folders.caches);
    folders.logs = orElse(absoluteVariable("XDG_STATE_HOME"), folders.logs);
    folders.data = orElse(absoluteVariable("XDG_DATA_HOME"), folders.data);
    folders.config = orElse(absoluteVariable("XDG_CONFIG_HOME"), folders.config);
    folders.temporary = orElse(absoluteVariable("TMPDIR"), folders.temporary);
    folders.runtime = orElse(absoluteVariable("XDG_RUNTIME_DIR"),
                             joinPath(folders.temporary, fmt::format("varnholt-{}", ::geteuid())));
    return folders;
}

Folders Folders::ofUser(uint32_t user) {
    Folders folders = usualFolders(homeInDatabase(user));
    folders.runtime = fmt::format("/run/user/{}", user);
    return folders;
}

} // namespace vh

#include "Platform/Host.h"

#include "Platform/Blank.h"
#include "Platform/Files.h"
#include "Platform/Linux/AssignmentFile.h"
#include "Platform/SystemError.h"

#include <array>
#include <cstdlib>
#include <ctime>
#include <pwd.h>
#include <string_view>
#include <sys/utsname.h>
#include <unistd.h>

namespace vh {

namespace {

/// The value of `key` in a system file of assignments; empty when the file or the key is missing.
std::string valueIn(const char* path, std::string_view key) {
    try {
        return assignedValue(readFileIfPresent(path).value_or(""), key);
    } catch (const SystemError&) {
        return {};
    }
}

std::string withoutCodeName(std::string name) {
    if (const size_t open = name.rfind(" ("); open != std::string::npos && name.ends_with(')'))
        name.erase(open);
    return name;
}

} // namespace

std::string hostName() {
    if (std::string pretty = valueIn("/etc/machine-info", "PRETTY_HOSTNAME"); !pretty.empty())
        return pretty;
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : std::string();
}

std::string userName() {
    std::array<char, 16384> buffer;
    passwd entry{};
    passwd* found = nullptr;
    ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
    return found == nullptr ? std::string() : found->pw_name;
}

std::string systemName() {
    for (const char* path : {"/etc/os-release", "/usr/lib/os-release"})
        if (std::string name = valueIn(path, "PRETTY_NAME"); !name.empty())
            return withoutCodeName(std::move(name));
    utsname kernel{};
    return ::uname(&kernel) == 0 ? std::string(kernel.sysname) + " " + kernel.release : "Linux";
}

bool isMacOS() {
    return false;
}

std::string distributionNames() {
    for (const char* path : {"/etc/os-release", "/usr/lib/os-release"})
        if (const std::string name = valueIn(path, "ID"); !name.empty())
            return name + " " + valueIn(path, "ID_LIKE");
    return {};
}

bool isAdministrator() {
    return ::geteuid() == 0;
}

std::string preferredLanguage() {
    for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = ::getenv(variable);
        if (value == nullptr || *value == '\0')
            continue;
        const std::string_view first = std::string_view(value).substr(0, std::string_view(value).find(':'));
        const std::string language(first.substr(0, first.find_first_of("_.@-")));
        return language == "C" || language == "POSIX" ? "en" : language;
    }
    return "en";
}

std::chrono::seconds uptime() {
    timespec time{};
    if (::clock_gettime(CLOCK_BOOTTIME, &time) != 0)
        throwErrno("uptime");
    return std::chrono::seconds(time.tv_sec);
}

std::string bootIdentity() {
    return std::string(trimmed(readFileIfPresent("/proc/sys/kernel/random/boot_id").value_or("")));
}

} // namespace vh

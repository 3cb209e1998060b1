#include "Platform/Linux/ServiceTraces.h"

#include "Platform/Files.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/LocalSocket.h"

#include <array>
#include <cstdlib>
#include <sys/socket.h>

namespace vh {

namespace {

/// Where a bus looks for services that it may start, the first first.
constexpr std::array busFolders{"/etc/dbus-1/system-services", "/run/dbus-1/system-services",
                                "/usr/local/share/dbus-1/system-services",
                                "/usr/share/dbus-1/system-services", "/lib/dbus-1/system-services"};
constexpr std::array unitFolders{"/etc/systemd/system", "/run/systemd/system"};
constexpr const char* usualBus = "unix:path=/run/dbus/system_bus_socket";

/// What stands after `key` at the beginning of a line.
std::optional<std::string> valueIn(const std::string& text, const std::string& key) {
    const std::string lines = "\n" + text;
    const size_t at = lines.find("\n" + key + "=");
    if (at == std::string::npos)
        return std::nullopt;
    const size_t begin = at + key.size() + 2;
    return lines.substr(begin, lines.find('\n', begin) - begin);
}

} // namespace

std::optional<std::string> ServiceTraces::startedProgram() const {
    for (const char* folder : busFolders) {
        const auto text = readFileIfPresent(joinPath(root + folder, service + ".service"));
        if (!text)
            continue;
        const std::string command = valueIn(*text, "Exec").value_or("");
        const std::string program = command.substr(0, command.find(' '));
        return statusOf(root + program) ? std::optional(program) : std::nullopt;
    }
    return std::nullopt;
}

bool ServiceTraces::isMasked() const {
    for (const char* folder : unitFolders)
        if (readLinkAt(AT_FDCWD, joinPath(root + folder, unit)) == "/dev/null")
            return true;
    return false;
}

bool hasSystemBus() {
    const char* const set = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    const std::string address = set != nullptr ? set : usualBus;
    constexpr std::string_view beginning = "unix:path=";
    if (!address.starts_with(beginning))
        return true;
    const std::string path = address.substr(beginning.size(), address.find_first_of(",;") - beginning.size());
    const FileDescriptor socket = openLocalSocket();
    const sockaddr_un bus = localAddress(path);
    return ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&bus), sizeof bus) == 0;
}

} // namespace vh

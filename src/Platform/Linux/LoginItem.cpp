#include "Platform/LoginItem.h"

#include "Platform/Files.h"
#include "Platform/Folders.h"
#include "Platform/Linux/AssignmentFile.h"
#include "Platform/PathParts.h"
#include "Platform/SystemError.h"

#include <cerrno>
#include <filesystem>
#include <fmt/format.h>
#include <string_view>

namespace vh {

namespace {

constexpr std::string_view entryHead = "[Desktop Entry]\n";

std::string fileIn(const Folders& folders) {
    return joinPath(folders.config, "autostart/com.varnholt.app.desktop");
}

/// A program that was replaced while it runs lies at the same path again.
std::string ownProgram() {
    constexpr std::string_view gone = " (deleted)";
    std::error_code error;
    std::string path = std::filesystem::read_symlink("/proc/self/exe", error).string();
    if (error)
        throw SystemError(error.value(), "/proc/self/exe");
    if (path.ends_with(gone))
        path.resize(path.size() - gone.size());
    return path;
}

/// A value of a desktop entry, where a backslash begins an escape.
std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text)
        if (c == '\n')
            out += "\\n";
        else
            (c == '\\' ? out += '\\' : out) += c;
    return out;
}

/// One argument of a command line of a desktop entry.
std::string asArgument(std::string_view argument) {
    std::string out = "\"";
    for (const char c : argument) {
        if (std::string_view("\"`$\\").find(c) != std::string_view::npos)
            out += '\\';
        out += c;
        if (c == '%')
            out += c;
    }
    return out + '"';
}

} // namespace

bool opensAtLogin(const Folders& folders) {
    try {
        const auto entry = readFileIfPresent(fileIn(folders));
        // What desktops write when a person switches it off in their settings.
        return entry && entry->starts_with(entryHead) && assignedValue(*entry, "Hidden") != "true" &&
               assignedValue(*entry, "X-GNOME-Autostart-enabled") != "false";
    } catch (const SystemError&) {
        return false;
    }
}

void setOpensAtLogin(bool opens, const Folders& folders) {
    const std::string file = fileIn(folders);
    if (!opens) {
        std::error_code error;
        std::filesystem::remove(file, error);
        if (error)
            throw SystemError(error.value(), file);
        return;
    }
    const std::string program = ownProgram();
    makeFolders(splitPath(file).folder);
    writeFileAtomically(
        file, fmt::format("{}Type=Application\nName=Varnholt\nExec={}\nTryExec={}\nTerminal=false\n",
                          entryHead, escaped(asArgument(program)), escaped(program)));
}

} // namespace vh

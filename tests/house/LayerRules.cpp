#include "house/LayerRules.h"

#include <algorithm>
#include <array>

namespace vh::house {

namespace {

/// Where a file stands: on a shared floor, or in a room of a feature.
struct Place {
    std::string_view package; ///< "Core", "ui", "Tools/SystemJunk"
    int floor;
    bool isFeature;
};

constexpr int qtFloor = 5;
constexpr int viewRoom = 6;
constexpr int commandRoom = 7;

struct Floor {
    std::string_view folder;
    int number;
};
constexpr std::array sharedFloors{Floor{"Platform", 0}, Floor{"Core", 1},    Floor{"HelperKit", 2},
                                  Floor{"Mail", 2},     Floor{"Reports", 2}, Floor{"Automation", 3},
                                  Floor{"app", 5},      Floor{"cli", 6},     Floor{"ui", 7},
                                  Floor{"product", 8},  Floor{"helper", 8}};
/// The rooms of a tool or feature; what lies in its folder itself is its engine.
constexpr std::array rooms{Floor{"work", 4}, Floor{"view", viewRoom}, Floor{"command", commandRoom}};
constexpr int engineRoom = 2;

std::optional<Place> placeOf(std::string_view path) {
    const size_t slash = path.find('/');
    if (slash == std::string_view::npos)
        return std::nullopt;
    const auto folder = path.substr(0, slash);
    if (folder != "Tools" && folder != "Features") {
        const auto found = std::ranges::find(sharedFloors, folder, &Floor::folder);
        return found == sharedFloors.end() ? std::nullopt
                                           : std::optional(Place{folder, found->number, false});
    }
    const size_t end = path.find('/', slash + 1);
    if (end == std::string_view::npos)
        return std::nullopt;
    const auto inside = path.substr(end + 1);
    const auto package = path.substr(0, end);
    if (inside.find('/') == std::string_view::npos)
        return Place{package, engineRoom, true};
    const auto room = std::ranges::find(rooms, inside.substr(0, inside.find('/')), &Floor::folder);
    return room == rooms.end() ? std::nullopt : std::optional(Place{package, room->number, true});
}

bool startsWithAny(std::string_view text, std::initializer_list<std::string_view> beginnings) {
    return std::ranges::any_of(beginnings, [&](std::string_view each) { return text.starts_with(each); });
}

bool isSystemHeader(std::string_view header) {
    static constexpr std::array<std::string_view, 42> names{
        "copyfile.h",  "dirent.h",  "dlfcn.h",      "err.h",     "errno.h",    "fcntl.h",      "fnmatch.h",
        "fstab.h",     "ftw.h",     "getopt.h",     "glob.h",    "grp.h",      "ifaddrs.h",    "langinfo.h",
        "libgen.h",    "libproc.h", "membership.h", "mntent.h",  "netdb.h",    "notify.h",     "paths.h",
        "poll.h",      "pthread.h", "pty.h",        "pwd.h",     "regex.h",    "removefile.h", "sched.h",
        "semaphore.h", "signal.h",  "spawn.h",      "strings.h", "sysexits.h", "syslog.h",     "termios.h",
        "time.h",      "ucred.h",   "unistd.h",     "util.h",    "utime.h",    "utmpx.h",      "wordexp.h"};
    return std::ranges::find(names, header) != names.end() || startsWithAny(header, {"sys/",
                                                                                     "linux/",
                                                                                     "bits/",
                                                                                     "asm/",
                                                                                     "arpa/",
                                                                                     "net/",
                                                                                     "netinet/",
                                                                                     "mach/",
                                                                                     "mach-o/",
                                                                                     "xpc/",
                                                                                     "dispatch/",
                                                                                     "systemd/",
                                                                                     "CoreFoundation/",
                                                                                     "CoreServices/",
                                                                                     "Foundation/",
                                                                                     "AppKit/",
                                                                                     "IOKit/",
                                                                                     "Security/",
                                                                                     "SystemConfiguration/",
                                                                                     "DiskArbitration/"});
}

bool isQtHeader(std::string_view header) {
    return header.size() > 1 && header[0] == 'Q' &&
           ((header[1] >= 'A' && header[1] <= 'Z') || header.starts_with("Qt"));
}

bool isWindowHeader(std::string_view header) {
    return startsWithAny(header, {"QtGui",           "QtQml",        "QtQuick",
                                  "QtWidgets",       "QtSvg",        "QQml",
                                  "QQuick",          "QJSValue",     "QJSEngine",
                                  "QGuiApplication", "QApplication", "QImage",
                                  "QPixmap",         "QColor",       "QFont",
                                  "QIcon",           "QPainter",     "QWindow",
                                  "QScreen",         "QClipboard",   "QDesktopServices",
                                  "QKeyEvent",       "QMouseEvent",  "QSvg",
                                  "QPalette"});
}

std::optional<std::string> projectIncludeFault(const Place& from, std::string_view header) {
    if (header.ends_with(".moc"))
        return std::nullopt;
    const auto to = placeOf(header);
    if (!to)
        return "an include is written from src/, with its folder";
    if (to->package == from.package && to->floor == from.floor)
        return std::nullopt;
    if (to->isFeature && to->package != from.package)
        return from.isFeature ? "a feature knows no other: what two share moves down"
                              : "a shared floor names no feature";
    if (to->floor > from.floor)
        return std::string(from.package) + " stands below " + std::string(to->package) + " there";
    if (to->floor == from.floor)
        return std::string(from.package) + " stands beside " + std::string(to->package);
    if (to->isFeature && from.floor == commandRoom && to->floor == viewRoom)
        return "commands know no view-models";
    if (from.isFeature && from.floor == engineRoom && to->floor > 1)
        return "an engine stands on Platform and Core alone";
    if (startsWithAny(header, {"Platform/Linux/", "Platform/macOS/", "Platform/Posix/"}))
        return "only Platform knows how a system does it";
    return std::nullopt;
}

std::optional<std::string> libraryIncludeFault(std::string_view path, const Place& from,
                                               std::string_view header) {
    const bool mayUseSystem = startsWithAny(path, {"Platform/Linux/", "Platform/macOS/", "Platform/Posix/"});
    if (isSystemHeader(header) && !mayUseSystem)
        return "only Platform/<System> includes headers of an operating system";
    if (isQtHeader(header) && from.floor != qtFloor && from.floor != viewRoom && from.package != "ui")
        return "only app, views and the window know Qt";
    if (isWindowHeader(header) && from.package != "ui")
        return "only ui knows the window";
    return std::nullopt;
}

bool asksForSystem(std::string_view line) {
    return line.starts_with("#") &&
           std::ranges::any_of(
               std::array<std::string_view, 4>{"__linux__", "__APPLE__", "Q_OS_", "TARGET_OS_"},
               [&](std::string_view name) { return line.find(name) != std::string_view::npos; });
}

} // namespace

std::optional<std::string> layerFault(std::string_view path, std::string_view line) {
    const auto from = placeOf(path);
    if (!from)
        return "no floor is known for this folder";
    if (asksForSystem(line) && from->floor > 0)
        return "only Platform asks which system it runs on";
    if (!line.starts_with("#include "))
        return std::nullopt;
    const std::string_view target = line.substr(std::string_view("#include ").size());
    const size_t end = target.find_first_of("\">", 1);
    if (end == std::string_view::npos)
        return "an include that cannot be read";
    const auto header = target.substr(1, end - 1);
    return target[0] == '"' ? projectIncludeFault(*from, header) : libraryIncludeFault(path, *from, header);
}

} // namespace vh::house

#include "Platform/OpenFiles.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/Linux/MappedNames.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"

#include <algorithm>
#include <string_view>
#include <unistd.h>

namespace vh {

namespace {

/// Gathers the direct children of one folder out of what a process refers to.
class ChildGatherer {
public:
    explicit ChildGatherer(const std::string& folder) : prefix_(joinPath(realFolder(folder), "")) {}

    void addPath(std::string_view path) {
        if (path.starts_with(prefix_))
            children_.emplace(path.substr(prefix_.size(), path.find('/', prefix_.size()) - prefix_.size()));
    }

    /// Each place where a path below the folder stands in a text, such as "--root=/tmp/build".
    void addMentioned(std::string_view text) {
        for (size_t at = text.find(prefix_); at != std::string_view::npos; at = text.find(prefix_, at + 1)) {
            const std::string_view rest = text.substr(at + prefix_.size());
            const std::string_view name =
                rest.substr(0, rest.find_first_of(std::string_view("/\0:\n \"'", 7)));
            if (!name.empty())
                children_.emplace(name);
        }
    }

    void addLink(int folder, const std::string& name) {
        if (const std::string target = readLinkAt(folder, name); !target.ends_with(" (deleted)"))
            addPath(target);
    }

    void addMapped(std::string_view maps) { addMappedNames(maps, prefix_, children_); }

    std::set<std::string> take() { return std::move(children_); }

private:
    std::string prefix_;
    std::set<std::string> children_;
};

/// The value of TMPDIR in the variables that a process was started with, each ended by a NUL.
std::string_view temporaryFolderIn(std::string_view variables) {
    constexpr std::string_view name = "TMPDIR=";
    while (!variables.empty()) {
        const std::string_view each = variables.substr(0, variables.find('\0'));
        if (each.starts_with(name))
            return each.substr(name.size());
        variables.remove_prefix(std::min(each.size() + 1, variables.size()));
    }
    return {};
}

void addWords(const std::string& id, ChildGatherer& gatherer) {
    if (const auto words = readFileIfPresent("/proc/" + id + "/cmdline"))
        gatherer.addMentioned(*words);
    if (const auto variables = readFileIfPresent("/proc/" + id + "/environ"))
        gatherer.addMentioned(temporaryFolderIn(*variables));
}

/// A process may end, or forbid the look, at any moment: then what it held until here is all there is to say.
void addProcess(const FolderReader& processes, const std::string& id, bool isOwn, ChildGatherer& gatherer) {
    try {
        if (!isOwn) // what a person asks this program about is not needed by it
            addWords(id, gatherer);
        FolderReader files(FolderReader(processes, id), "fd");
        for (const char* link : {"cwd", "root", "exe"})
            gatherer.addLink(processes.descriptor(), id + "/" + link);
        while (const auto file = files.next())
            gatherer.addLink(files.descriptor(), std::string(file->name));
        if (const auto maps = readFileIfPresent("/proc/" + id + "/maps"))
            gatherer.addMapped(*maps);
    } catch (const SystemError&) {
        return;
    }
}

bool isProcess(std::string_view name) {
    return std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
}

/// Each line ends with the path that a socket is bound to, if it is; the descriptor itself does not say it.
void addSockets(ChildGatherer& gatherer) {
    const std::string text = readFileIfPresent("/proc/net/unix").value_or("");
    std::string_view table = text;
    while (!table.empty()) {
        const std::string_view line = table.substr(0, table.find('\n'));
        table.remove_prefix(std::min(line.size() + 1, table.size()));
        if (const size_t path = line.find(" /"); path != std::string_view::npos)
            gatherer.addPath(line.substr(path + 1));
    }
}

} // namespace

std::set<std::string> childrenInUse(const std::string& folder) {
    ChildGatherer gatherer(folder);
    const std::string own = std::to_string(::getpid());
    FolderReader processes("/proc");
    while (const auto entry = processes.next())
        if (isProcess(entry->name))
            addProcess(processes, std::string(entry->name), entry->name == own, gatherer);
    addSockets(gatherer);
    return gatherer.take();
}

} // namespace vh

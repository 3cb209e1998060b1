#include "Platform/OpenFiles.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/Linux/MappedNames.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/PathParts.h"

#include <algorithm>
#include <string_view>

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

/// A process may end, or forbid the look, at any moment: then what it held until here is all there is to say.
void addProcess(const FolderReader& processes, const std::string& id, ChildGatherer& gatherer) {
    try {
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
    FolderReader processes("/proc");
    while (const auto entry = processes.next())
        if (isProcess(entry->name))
            addProcess(processes, std::string(entry->name), gatherer);
    addSockets(gatherer);
    return gatherer.take();
}

} // namespace vh

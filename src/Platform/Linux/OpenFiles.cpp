#include "Platform/OpenFiles.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/Linux/MappedNames.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/PathParts.h"

#include <algorithm>
#include <unistd.h>

namespace vh {

namespace {

/// Gathers the direct children of one folder out of what a process refers to.
class ChildGatherer {
public:
    explicit ChildGatherer(const std::string& folder) : prefix_(joinPath(realFolder(folder), "")) {}

    void addLink(int folder, const std::string& name) {
        const std::string target = readLinkAt(folder, name);
        if (target.starts_with(prefix_) && !target.ends_with(" (deleted)"))
            children_.insert(
                target.substr(prefix_.size(), target.find('/', prefix_.size()) - prefix_.size()));
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

bool isProcessOf(uid_t user, const FolderReader& processes, std::string_view name) {
    struct stat status {};
    return std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; }) &&
           ::fstatat(processes.descriptor(), std::string(name).c_str(), &status, 0) == 0 &&
           status.st_uid == user;
}

} // namespace

std::set<std::string> childrenInUse(const std::string& folder) {
    ChildGatherer gatherer(folder);
    FolderReader processes("/proc");
    while (const auto entry = processes.next())
        if (isProcessOf(::geteuid(), processes, entry->name))
            addProcess(processes, std::string(entry->name), gatherer);
    return gatherer.take();
}

} // namespace vh

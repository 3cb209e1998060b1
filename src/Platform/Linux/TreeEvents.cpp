#include "Platform/TreeEvents.h"

#include "Platform/FileIdentity.h"
#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/Linux/Inotify.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/StatusType.h"

#include <algorithm>
#include <bit>
#include <fmt/format.h>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vh {

namespace {

/// The lower one of the system's and of this user namespace's.
size_t limitOfWatches() {
    size_t limit = SIZE_MAX;
    for (const char* file : {"/proc/sys/fs/inotify/max_user_watches", "/proc/sys/user/max_inotify_watches"})
        try {
            limit = std::min<size_t>(limit, std::stoul(readFile(file)));
        } catch (const std::exception&) {
            // It is not there in every container; the other one counts then.
        }
    return limit;
}

/// Whether `name` in the folder above still leads to this one.
bool isStillAt(const FolderReader& above, const std::string& name, const FolderReader& folder) {
    struct stat named {
    }, opened{};
    return ::fstatat(above.descriptor(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           ::fstat(folder.descriptor(), &opened) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

} // namespace

std::string WatchLimit::setting() const {
    return fmt::format("fs.inotify.max_user_watches={}", raiseTo);
}

WatchLimitReached::WatchLimitReached(const std::string& folder, const WatchLimit& limit)
    : SystemError(folder,
                  fmt::format("Its {} folders are more than may be watched, for the system's limit is {}; "
                              "set {}",
                              limit.folders, limit.limit, limit.setting())),
      limit_(limit) {}

struct TreeEvents::State {
    /// A watched folder, by its watch. The path is put together when it is needed.
    struct Folder {
        int parent;
        unsigned walk; ///< in which it was last seen
        std::string name;
    };
    enum class Known { pass, walkAgain }; ///< what to do with a folder that is watched by then

    State(const std::string& folder, const std::string& left, const CancelToken& token)
        : events(openInotify(folder)), root(folder), except(left), cancel(token) {}

    void begin();
    TreeChanges take();
    void see(const inotify_event& event, TreeChanges& changes);
    int add(const FolderReader& folder) const;
    int watchOf(const FolderReader& folder) const;
    void enter(const FolderReader& above, int parent, const std::string& name, Known known);
    void tryToEnter(const FolderReader& above, int parent, const std::string& name, Known known);
    void list(FolderReader& folder, int watch);
    void arrive(int parent, const std::string& name, Known known);
    void walkAgain();
    void leaveMoved();
    bool standsAt(int watch) const;
    bool isExcepted(const std::string& name, const FolderReader& folder) const;
    template <class IsLeft>
    void leave(IsLeft isLeft);
    std::string pathOf(int watch) const;
    bool liesIn(int watch, int above) const;
    /// The kernel does not tell when a folder above it is moved.
    bool isElsewhere() const { return identityOf(joinPath(root, ".")) != identity; }
    WatchLimit limit() const;

    FileDescriptor events;
    const std::string root;
    const std::string except;
    const CancelToken cancel;
    std::optional<FileIdentity> identity;
    int rootWatch = -1;
    std::unordered_map<int, Folder> folders;
    std::vector<int> moved; ///< where to, is not known yet
    unsigned walk = 0;
    bool lostSome = false;
    size_t unwatched = 0; ///< for which the system's limit left no room
    bool isGone = false;
};

void TreeEvents::State::begin() {
    identity = identityOf(joinPath(root, "."));
    FolderReader reader(root);
    rootWatch = add(reader);
    if (rootWatch >= 0)
        folders.emplace(rootWatch, Folder{-1, walk, {}});
    else if (errno == ENOSPC)
        ++unwatched;
    else
        throwErrno(root);
    list(reader, rootWatch);
    if (unwatched > 0)
        throw WatchLimitReached(root, limit());
}

/// Through the open folder, so that it is the one that is listed then, whatever stands at its name.
int TreeEvents::State::add(const FolderReader& folder) const {
    return ::inotify_add_watch(events.get(), fmt::format("/proc/self/fd/{}", folder.descriptor()).c_str(),
                               folderEvents);
}

/// The watch of a folder that is thought to be watched; below 0 when it is not.
int TreeEvents::State::watchOf(const FolderReader& folder) const {
    const int watch = add(folder);
    if (watch < 0 || folders.contains(watch))
        return watch;
    ::inotify_rm_watch(events.get(), watch);
    return -1;
}

bool TreeEvents::State::isExcepted(const std::string& name, const FolderReader& folder) const {
    struct stat opened {};
    return !except.empty() && name == splitPath(except).name && ::fstat(folder.descriptor(), &opened) == 0 &&
           identityIn(opened) == identityOf(except);
}

/// Watches first and lists then, so that what comes meanwhile is met by one of the two.
void TreeEvents::State::enter(const FolderReader& above, int parent, const std::string& name, Known known) {
    cancel.throwIfCancelled();
    FolderReader folder(above, name);
    if (isExcepted(name, folder))
        return;
    const int watch = add(folder);
    if (watch < 0) {
        if (errno != ENOSPC)
            return;
        ++unwatched; // those in it are counted too
        list(folder, watch);
        return;
    }
    const bool isNew = !folders.contains(watch);
    if (!isStillAt(above, name, folder)) { // its move was not heard; where it went to, it is met again
        if (isNew)
            ::inotify_rm_watch(events.get(), watch);
    } else if (liesIn(parent, watch)) { // so it seems by a stale name; the truth is found from the top
        lostSome = true;
    } else {
        folders.insert_or_assign(watch, Folder{parent, walk, name});
        if (isNew || known == Known::walkAgain)
            list(folder, watch);
    }
}

/// All of it again, for one that was watched somewhere else may have changed while its path was not known.
void TreeEvents::State::list(FolderReader& folder, int watch) {
    try {
        while (const auto entry = folder.next())
            if (entry->type == FileType::folder)
                tryToEnter(folder, watch, std::string(entry->name), Known::walkAgain);
    } catch (const SystemError&) {
        // What cannot be listed cannot be read either; whoever reads the tree says so.
    }
}

void TreeEvents::State::tryToEnter(const FolderReader& above, int parent, const std::string& name,
                                   Known known) {
    try {
        enter(above, parent, name, known);
    } catch (const SystemError&) {
        // It went meanwhile, or may not be listed: a change of its rights is told by the folder it is in.
    }
}

std::string TreeEvents::State::pathOf(int watch) const {
    const auto found = folders.find(watch);
    if (watch == rootWatch || found == folders.end())
        return root;
    return joinPath(pathOf(found->second.parent), found->second.name);
}

bool TreeEvents::State::liesIn(int watch, int above) const {
    while (watch != above) {
        const auto found = folders.find(watch);
        if (found == folders.end() || watch == rootWatch)
            return false;
        watch = found->second.parent;
    }
    return true;
}

void TreeEvents::State::arrive(int parent, const std::string& name, Known known) {
    try {
        const FolderReader above(pathOf(parent));
        if (watchOf(above) == parent)
            tryToEnter(above, parent, name, known);
    } catch (const SystemError&) {
        // It has gone on by now, of which a later event tells.
    }
}

/// Whether the folder of this watch is where it is thought to be.
bool TreeEvents::State::standsAt(int watch) const {
    try {
        const FolderReader above(pathOf(folders.at(watch).parent));
        return watchOf(FolderReader(above, folders.at(watch).name)) == watch;
    } catch (const SystemError&) {
        return false;
    }
}

template <class IsLeft>
void TreeEvents::State::leave(IsLeft isLeft) {
    std::erase_if(folders, [&](const auto& each) {
        if (!isLeft(each.first))
            return false;
        ::inotify_rm_watch(events.get(), each.first);
        return true;
    });
}

/// Lets go of what was moved out of the tree, with all that is in it.
void TreeEvents::State::leaveMoved() {
    std::unordered_map<int, bool> isOut;
    for (const int each : std::exchange(moved, {}))
        if (folders.contains(each) && !standsAt(each))
            isOut.emplace(each, true);
    if (isOut.empty())
        return;
    std::vector<int> way;
    for (const auto& [watch, folder] : folders) {
        int at = watch;
        for (; at != rootWatch && !isOut.contains(at) && folders.contains(at); at = folders.at(at).parent)
            way.push_back(at);
        const bool out = at != rootWatch && (!isOut.contains(at) || isOut[at]);
        for (const int each : std::exchange(way, {}))
            isOut.emplace(each, out);
    }
    leave([&](int watch) { return watch != rootWatch && isOut[watch]; });
}

/// When events were lost.
void TreeEvents::State::walkAgain() {
    ++walk;
    try {
        FolderReader reader(root);
        folders.at(rootWatch).walk = walk;
        list(reader, rootWatch);
    } catch (const SystemError&) {
        isGone = true;
    }
    leave([&](int watch) { return folders.at(watch).walk != walk; });
}

void TreeEvents::State::see(const inotify_event& event, TreeChanges& changes) {
    const bool isRoot = event.wd == rootWatch;
    if (isRoot && (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED)) != 0)
        isGone = true;
    if ((event.mask & IN_IGNORED) != 0) {
        folders.erase(event.wd);
        return;
    }
    if (!folders.contains(event.wd))
        return; // of a folder that has left the tree
    changes.something = true;
    if ((event.mask & IN_MOVE_SELF) != 0)
        moved.push_back(event.wd);
    if ((event.mask & IN_ISDIR) == 0 || event.len == 0)
        return;
    if ((event.mask & IN_MOVED_TO) != 0)
        arrive(event.wd, event.name, Known::walkAgain); // what came into it elsewhere was not heard
    else if ((event.mask & (IN_CREATE | IN_ATTRIB)) != 0)
        arrive(event.wd, event.name, Known::pass);
}

TreeChanges TreeEvents::State::take() {
    TreeChanges changes;
    const size_t before = unwatched;
    takeInotifyEvents(events, [&](const inotify_event& event) {
        if ((event.mask & IN_Q_OVERFLOW) != 0)
            lostSome = true;
        else
            see(event, changes);
    });
    isGone = isGone || isElsewhere();
    if (!isGone)
        leaveMoved();
    if (std::exchange(lostSome, false)) {
        changes.something = true;
        if (!isGone)
            walkAgain();
    }
    changes.isGone = isGone;
    if (unwatched > before)
        changes.limit = limit();
    return changes;
}

WatchLimit TreeEvents::State::limit() const {
    const size_t limit = limitOfWatches();
    return {folders.size() + unwatched, limit, std::bit_ceil(limit + unwatched)};
}

TreeEvents::TreeEvents(const std::string& folder, const std::string& except, const CancelToken& cancel)
    : state_(std::make_unique<State>(folder, except, cancel)) {
    state_->begin();
}
TreeEvents::~TreeEvents() = default;
TreeEvents::TreeEvents(TreeEvents&&) noexcept = default;
TreeEvents& TreeEvents::operator=(TreeEvents&&) noexcept = default;

int TreeEvents::descriptor() const {
    return state_->events.get();
}

TreeChanges TreeEvents::take() {
    return state_->take();
}

size_t TreeEvents::folderCount() const {
    return state_->folders.size();
}

} // namespace vh

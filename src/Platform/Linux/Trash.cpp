#include "Platform/Trash.h"

#include "Platform/Files.h"
#include "Platform/Linux/TrashFolder.h"
#include "Platform/Linux/TrashInfo.h"
#include "Platform/PathParts.h"
#include "Platform/Posix/Calls.h"
#include "Platform/Posix/Rename.h"
#include "Platform/Posix/StatusType.h"
#include "Platform/Volumes.h"

#include <algorithm>
#include <array>
#include <climits>
#include <ctime>
#include <unistd.h>

namespace vh {

namespace {

/// How many items of one name a Trash holds at most.
constexpr unsigned mostAttempts = 100'000;

std::optional<FileIdentity> identityAt(int folder, const std::string& name) {
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return identityIn(status);
}

std::string localTimeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return text.data();
}

size_t longestNameIn(const FileDescriptor& folder) {
    const long most = ::fpathconf(folder.get(), _PC_NAME_MAX);
    return most > 0 ? static_cast<size_t>(most) : NAME_MAX;
}

SystemError somethingElse(const std::string& path) {
    return SystemError(path, "Something else lies there by now");
}

/// What is being moved: its name in its opened folder.
struct Item {
    std::string path; ///< absolute, its folders' links resolved
    std::string name;
    FileDescriptor folder;
    std::optional<FileIdentity> expected;

    void refuseUnlessExpected(const std::optional<FileIdentity>& found) const {
        if (expected && found != expected)
            throw somethingElse(path);
    }
};

/// A name in the Trash, reserved by its info file. The info file goes again unless the item landed.
class Reservation {
public:
    /// Empty when another item has the name already.
    static std::optional<Reservation> make(const TrashFolder& trash, const Item& item, std::string name) {
        const std::string infoName = name + std::string(trashInfoSuffix);
        const std::string infoPath = joinPath(joinPath(trash.path, "info"), infoName);
        const FileDescriptor file =
            openAt(trash.info.get(), infoName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        if (!file && errno == EEXIST)
            return std::nullopt;
        if (!file)
            throwErrno(infoPath);
        Reservation reservation(trash, std::move(name), infoName);
        const size_t skipped = trash.relativeTo.empty() ? 0 : joinPath(trash.relativeTo, "").size();
        writeAll(file, trashInfoText({item.path.substr(skipped), localTimeNow()}), infoPath);
        return reservation;
    }
    Reservation(Reservation&& other) noexcept
        : trash_(other.trash_), name_(std::move(other.name_)), infoName_(std::exchange(other.infoName_, "")) {
    }
    ~Reservation() {
        if (!infoName_.empty())
            ::unlinkat(trash_.info.get(), infoName_.c_str(), 0);
    }

    /// False when an item without info file has the name, or errno says another reason.
    bool land(const Item& item) {
        if (!renameWithoutReplacing(item.folder.get(), item.name, trash_.files.get(), name_))
            return false;
        if (!item.expected || identityAt(trash_.files.get(), name_) == item.expected) {
            infoName_.clear();
            return true;
        }
        if (renameWithoutReplacing(trash_.files.get(), name_, item.folder.get(), item.name))
            throw somethingElse(item.path);
        infoName_.clear(); // the stranger stays in the Trash, from where it can be restored
        throw SystemError(item.path, "Something else came there meanwhile; it lies in the Trash");
    }

private:
    Reservation(const TrashFolder& trash, std::string name, std::string infoName)
        : trash_(trash), name_(std::move(name)), infoName_(std::move(infoName)) {}

    const TrashFolder& trash_;
    std::string name_;
    std::string infoName_;
};

/// A number above `taken` whose name is free while the one before it is not. Thousands of one name may lie there, so
/// they are not tried one by one.
unsigned freeNumberAfter(unsigned taken, const TrashFolder& trash, const Item& item, size_t longest) {
    const auto isTaken = [&](unsigned number) {
        return identityAt(trash.info.get(),
                          trashName(item.name, number, longest) + std::string(trashInfoSuffix))
            .has_value();
    };
    unsigned free = 2 * taken;
    for (; free < mostAttempts && isTaken(free); free *= 2)
        taken = free;
    while (free - taken > 1) {
        const unsigned middle = taken + (free - taken) / 2;
        (isTaken(middle) ? taken : free) = middle;
    }
    return free;
}

/// Where the item landed; nothing when this Trash lies on another volume.
std::optional<std::string> landIn(const TrashFolder& trash, const Item& item) {
    constexpr unsigned fewAttempts = 8;
    const size_t longest = longestNameIn(trash.info);
    for (unsigned attempt = 1; attempt < mostAttempts; ++attempt) {
        if (attempt == fewAttempts)
            attempt = freeNumberAfter(attempt - 1, trash, item, longest);
        const std::string name = trashName(item.name, attempt, longest);
        std::optional<Reservation> reservation = Reservation::make(trash, item, name);
        if (!reservation)
            continue;
        if (reservation->land(item))
            return joinPath(joinPath(trash.path, "files"), name);
        if (errno == EXDEV)
            return std::nullopt;
        if (errno != EEXIST)
            throwErrno(item.path);
    }
    throw SystemError(EEXIST, joinPath(trash.path, item.name));
}

/// The device that `folder` lies on, or would if it were made. Throws SystemError.
uint64_t deviceOf(const std::string& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) == 0)
        return static_cast<uint64_t>(status.st_dev);
    if (errno != ENOENT || folder == "/")
        throwErrno(folder);
    return deviceOf(splitPath(folder).folder);
}

/// The Trash that `landed` lies in, its name there, and where its info file is.
struct Landed {
    explicit Landed(const std::string& path) : name(splitPath(path).name) {
        const PathParts files = splitPath(splitPath(path).folder);
        trash = files.folder;
        isInFiles = files.name == "files";
        infoPath = joinPath(joinPath(trash, "info"), name + std::string(trashInfoSuffix));
    }

    std::optional<std::string> original() const {
        const auto text = isInFiles ? readFileIfPresent(infoPath) : std::nullopt;
        const auto info = text ? parseTrashInfo(*text) : std::nullopt;
        if (!info)
            return std::nullopt;
        return info->path.starts_with('/') ? info->path : joinPath(baseOfTrash(trash), info->path);
    }

    std::string name;
    std::string trash;
    std::string infoPath;
    bool isInFiles = false;
};

bool isSamePlace(const std::string& one, const std::string& other) {
    return one == other || withRealFolder(one) == withRealFolder(other);
}

} // namespace

std::string moveToTrash(const std::string& path, const std::optional<FileIdentity>& expected) {
    const PathParts parts = splitPath(path);
    if (parts.name.empty() || parts.name == "." || parts.name == "..")
        throw SystemError(EINVAL, path);
    const std::string realParent = realFolder(parts.folder);
    const Item item{joinPath(realParent, parts.name), parts.name, openPath(realParent, openForLookup),
                    expected};
    const std::optional<FileIdentity> found = identityAt(item.folder.get(), item.name);
    if (!found)
        throwErrno(path);
    item.refuseUnlessExpected(found);

    if (found->device == deviceOf(TrashFolder::homePath()))
        if (const auto landed = landIn(TrashFolder::ofHome(), item))
            return *landed;
    if (const auto landed = landIn(TrashFolder::ofVolume(mountPointOf(realParent)), item))
        return *landed;
    throw SystemError(EXDEV, item.path);
}

bool isInTrash(const std::string& landed, const std::string& original) {
    try {
        const std::optional<std::string> from = Landed(landed).original();
        return from && identityOf(landed) && isSamePlace(*from, original);
    } catch (const SystemError&) {
        return false;
    }
}

void restoreFromTrash(const std::string& landed, const std::string& original) {
    const Landed item(landed);
    if (!identityOf(landed))
        throwErrno(landed);
    const std::optional<std::string> from = item.original();
    if (!from)
        throw SystemError(landed, "The Trash does not say where this came from");
    if (!isSamePlace(*from, original))
        throw SystemError(landed, "The Trash says this came from " + *from);
    const PathParts target = splitPath(original);
    makeFolders(target.folder);
    const FileDescriptor folder = openPath(target.folder, openForLookup);
    const FileDescriptor files = openPath(splitPath(landed).folder, openForLookup);
    if (!renameWithoutReplacing(files.get(), item.name, folder.get(), target.name))
        throwErrno(errno == EEXIST ? original : landed);
    // The item is back: an info file left behind by a failure here speaks of nothing and does no harm.
    ::unlink(item.infoPath.c_str());
}

} // namespace vh

#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/FileIdentity.h"
#include "Platform/FileMetadata.h"
#include "Platform/SourceFile.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

/// A file on its way to its name: it has none yet, or, where the file system wants one, lies beside it as "<name><suffix>",
/// and goes when it is let go before it was placed. The next one of that name and suffix takes the place of what a killed
/// process left; while a living one works at it, it is called otherwise, so that nobody places what another has half
/// written. One thread at a time. What fails throws SystemError.
class PartialFile {
public:
    /// What it is to become, and where.
    struct Target {
        std::shared_ptr<FileDescriptor> folder;
        std::string name;
        std::string suffix;
        std::string path;         ///< for errors
        bool givesLists = false;  ///< the folder gives access lists of its own to what is made in it
        bool isUntouched = false; ///< no killed process can have left anything
    };
    PartialFile(Target target, unsigned mode);
    ~PartialFile();
    PartialFile(PartialFile&&) noexcept;
    PartialFile& operator=(PartialFile&&) = delete;

    void writeAt(int64_t offset, std::string_view bytes);
    enum class Cloned {
        yes,
        notThis, ///< another file may be shared
        never    ///< these volumes cannot
    };
    /// Makes it share all of the source's blocks. Where that cannot be done nothing is written.
    Cloned cloneFrom(const SourceFile& source);
    /// Copies inside the kernel from and to the same offset. How many bytes, 0 at the source's end.
    int64_t copyFrom(const SourceFile& source, int64_t offset, int64_t most);
    /// What was not written up to there is a hole.
    void setSize(int64_t bytes);
    RefusedMetadata apply(const FileMetadata& metadata);

    /// As it is now; its name does not change it, but the time `changed`.
    FileState state() const;
    /// Returns when the medium has all of it.
    void flush();

    enum class Place { free, replacing };
    /// Gives it its name in one step; with `free`, only where nothing lies. After a power cut the name may be missing
    /// until the volume was flushed (Platform/MediumRead.h), and a file that was not flushed before may be torn.
    void place(Place how);

private:
    template <class Take>
    void nameOnTheWay(Take take);

    Target target_;
    std::string partialName_; ///< empty while it has no name
    FileDescriptor file_;
};

/// A symbolic link as a copy carries it over.
struct CopyLink {
    std::string target;
    FileMetadata metadata;
};

/// A folder that a copy takes things from or puts them into, by paths relative to it. Links below it are not followed,
/// so that nothing comes from or lands elsewhere. One thread at a time. What fails throws SystemError.
class CopyFolder {
public:
    explicit CopyFolder(const std::string& path);
    /// What its partial files end in is the caller's.
    CopyFolder(const std::string& path, std::string suffix);

    const std::string& path() const { return path_; }
    uint64_t device() const { return device_; }
    /// Whether two names that differ in case alone are one file here. Tries it out.
    bool isCaseBlind();
    /// Whether its path still leads here: no longer when its volume was unmounted.
    bool isStillThere() const;
    /// What this process may still fill.
    int64_t freeBytes() const;

    /// With the missing ones above it, of `mode` less what the process never gives. A folder that is there already stays
    /// as it is: then it says no.
    bool makeFolder(const std::string& relative, unsigned mode = 0777);
    RefusedMetadata applyToFolder(const std::string& relative, const FileMetadata& metadata);
    FileMetadata metadataOfFolder(const std::string& relative);
    /// Opens a file to copy it.
    SourceFile source(const std::string& relative,
                      SourceFile::Attributes attributes = SourceFile::Attributes::read);
    /// The link that lies there; nothing when it is no link.
    std::optional<CopyLink> link(const std::string& relative);
    /// Puts a link there in one step. Its folder must exist. Owner and times are given as far as the file system goes.
    void placeLink(const std::string& relative, const CopyLink& link, PartialFile::Place how);
    /// False also for a link to one.
    bool isFolder(const std::string& relative);
    /// What lies there, a link being itself; nothing when the name is free.
    std::optional<FileIdentity> at(const std::string& relative);
    /// Of the plain file that lies there; nothing when none does.
    std::optional<FileState> fileState(const std::string& relative);
    /// Begins a file with `mode` less what the process never gives; a partial that was left over goes first, unless the
    /// folder was made a moment ago. The folder must exist.
    enum class Folder { known, madeJustNow };
    PartialFile create(const std::string& relative, unsigned mode, Folder folder = Folder::known);
    /// The same of a file that will get this metadata: nobody has rights to it sooner who will have none then.
    PartialFile create(const std::string& relative, const FileMetadata& metadata,
                       Folder folder = Folder::known);
    /// The first of "name 2.ext", "name 3.ext", … that is free, relative again.
    std::string freeName(const std::string& relative);

private:
    /// The folder that holds `relative`, kept open for its neighbours.
    const std::shared_ptr<FileDescriptor>& parentOf(std::string_view relative);
    std::shared_ptr<FileDescriptor> open(std::string_view relative) const;

    std::string path_;
    std::string partialSuffix_;
    std::shared_ptr<FileDescriptor> top_;
    uint64_t device_ = 0;
    std::string parentName_;
    std::shared_ptr<FileDescriptor> parent_;
    bool parentGivesLists_ = false;
};

} // namespace vh

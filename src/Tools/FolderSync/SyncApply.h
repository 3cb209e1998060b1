#pragma once

#include "Platform/CopyFolder.h"
#include "Platform/SystemError.h"
#include "Tools/FolderSync/SyncEngine.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vh::sync {

/// One plan being carried out. Works from the two open folders, so that a link below either leads nowhere else.
class SyncApply {
public:
    /// Throws SystemError when one of them cannot be opened.
    SyncApply(const std::string& source, const std::string& destination,
              const SyncEngine::Steering& steering);
    SyncResult run(const SyncPlan& plan);

private:
    bool goesOn() const { return !steering_.shouldContinue || steering_.shouldContinue(); }
    void addFault(const std::string& relative, Message what);
    void carryOut(const SyncAction& action);
    void makeFolder(const std::string& relative);
    void makeParent(const std::string& relative);
    void noteChanged(const std::string& folder);
    void finishFolders();
    void noteRefused(const std::string& relative, const RefusedMetadata& refused);
    bool isInSource(const std::string& relative);
    bool isFileInSource(const std::string& relative);
    void remove(const std::string& relative);
    void moveToTrash(const std::string& relative, const std::optional<FileIdentity>& identity);
    void copy(const SyncAction& action);
    void copyFile(const SyncAction& action);
    Message copyFailure(const std::string& relative, const SystemError& error) const;
    bool fill(PartialFile& partial, const SourceFile& source);
    void fillSmall(PartialFile& partial, const SourceFile& source);
    template <class Place>
    void place(const SyncAction& action, Place put);

    const SyncEngine::Steering& steering_;
    CopyFolder source_, destination_;
    bool refusesClones_ = false;
    std::string block_;                 ///< for small files
    const SyncPlan* plan_ = nullptr;    ///< in hand
    std::optional<std::string> parent_; ///< the last that is there for certain
    std::set<std::string> folders_;     ///< they get their metadata when all in them has landed
    std::string changed_;               ///< the last of them that something landed in
    bool isFailed_ = false;             ///< of the action in hand
    std::optional<std::string> landed_; ///< in the Trash, of the action in hand
    SyncResult result_;
};

} // namespace vh::sync

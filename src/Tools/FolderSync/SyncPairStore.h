#pragma once

#include "Core/SharedFile.h"
#include "Platform/Folders.h"
#include "Tools/FolderSync/SyncPair.h"

#include <functional>
#include <string>
#include <vector>

namespace vh::sync {

/// The pairs of this user, in one file that several processes share. One thread at a time.
class SyncPairStore {
public:
    /// The file and its folder are made by the first write.
    explicit SyncPairStore(std::string file) : file_(std::move(file)) {}
    /// "<data>/Varnholt/FolderSync/pairs.json".
    static std::string fileIn(const Folders& folders) {
        return folders.data + "/Varnholt/FolderSync/pairs.json";
    }

    /// Empty when the file is missing or cannot be read.
    std::vector<SyncPair> load();
    /// Replaces all; what could not be understood until then is kept as "<file>.damaged". Throws SystemError.
    void save(const std::vector<SyncPair>& pairs);
    /// Changes what is in the file by then, while no other process may. Throws SystemError, also when the file cannot
    /// be read.
    void change(const std::function<void(std::vector<SyncPair>&)>& change);

private:
    void catchUp();

    SharedFile file_;
    std::vector<SyncPair> pairs_;
};

} // namespace vh::sync

#pragma once

#include <memory>
#include <string>
#include <vector>

namespace vh {

/// What happened in a watched folder since it was last asked.
struct FolderChanges {
    std::vector<std::string> names; ///< that came, went or changed, each once
    bool lostSome = false;          ///< events were dropped: look at the whole folder again
    bool isGone = false;            ///< the folder was removed, moved or unmounted: nothing more will come
};

/// Watches one folder, not what lies in its folders. At rest it costs nothing. One thread.
class FolderEvents {
public:
    /// Throws SystemError; when the system's limit of watches is used up, its message says which setting to raise.
    explicit FolderEvents(const std::string& folder);
    ~FolderEvents();
    FolderEvents(FolderEvents&&) noexcept;
    FolderEvents& operator=(FolderEvents&&) noexcept;

    /// Readable when there are changes to take.
    int descriptor() const;
    /// Never blocks.
    FolderChanges take();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh

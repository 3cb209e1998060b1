#pragma once

#include "Core/ContentHash.h"
#include "Platform/SourceFile.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vh::copy {

/// What a verified copy has landed and proven so far, kept in a file so that the same copy, when it was interrupted, by a
/// kill too, neither copies nor reads back again what is there. Without notes, as when another process holds them, all
/// is copied; nothing throws.
class CopyProofs {
public:
    /// Reads the notes that were left for these in `folder`, which is made, and goes on with them.
    CopyProofs(const std::string& folder, const std::vector<std::string>& sources,
               const std::vector<std::string>& destinations, HashAlgorithm algorithm);
    ~CopyProofs();
    CopyProofs(const CopyProofs&) = delete;
    CopyProofs& operator=(const CopyProofs&) = delete;

    /// One file on one destination, as it was when its copy got its name.
    struct Note {
        std::string place; ///< below the destination
        FileState source, copy;
        bool isCloned = false;
        bool isReplaced = false;
        bool isOfThisBoot = false; ///< what was written before the last start may have been lost
        std::string checksum;      ///< empty until the copy was read back
    };
    /// What an earlier run noted. Any thread.
    const Note* find(size_t destination, const std::string& relative) const;
    bool isEmpty() const;

    /// A copy is about to get its name. Any thread.
    void noteLanding(size_t destination, const std::string& relative, const Note& note);
    /// What was read back from the medium; `copies` are the destinations and their copies' states.
    void noteProven(const std::string& relative, const std::string& checksum,
                    const std::vector<std::pair<size_t, FileState>>& copies);

    /// The copy came to its end: nothing is left to take up.
    void forget();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh::copy

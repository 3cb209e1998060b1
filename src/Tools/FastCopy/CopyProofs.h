#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vh::copy {

/// What verified copies of the same sources to the same destinations have proven so far, kept in a file so that a copy
/// that was interrupted, by a kill too, does not copy or read back again what is there. Engine's thread.
class CopyProofs {
public:
    /// Opens, or begins, the notes for these in `folder`. Throws nothing: without notes everything is copied.
    CopyProofs(const std::string& folder, const std::vector<std::string>& sources,
               const std::vector<std::string>& destinations, std::string_view algorithm);
    ~CopyProofs();
    CopyProofs(const CopyProofs&) = delete;
    CopyProofs& operator=(const CopyProofs&) = delete;

    /// The copy came to its end: nothing is left to take up.
    void forget();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vh::copy

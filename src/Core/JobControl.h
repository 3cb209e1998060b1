#pragma once

#include "Platform/CancelToken.h"

#include <functional>
#include <string_view>

namespace vh {

/// What long work is handed: how to stop it and whom to tell how far it is.
struct JobControl {
    CancelToken cancel;
    /// How much is done, 0 to 1, below 0 when unknown, and what is at work now. Called on the worker's thread, already
    /// throttled by the worker. May be empty.
    std::function<void(double fraction, std::string_view what)> progress;

    /// Throws Cancelled when asked to stop.
    void throwIfCancelled() const { cancel.throwIfCancelled(); }
    void report(double fraction, std::string_view what) const {
        if (progress)
            progress(fraction, what);
    }
};

} // namespace vh

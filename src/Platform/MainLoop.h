#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace vh {

/// What the main thread waits for: time, descriptors and work from other threads. The window has one over Qt, the
/// command line one over poll, a test one whose time it turns by hand. Only `post` may be called from other threads.
class MainLoop {
public:
    /// Letting go of it ends what it stands for; nothing is called any more after that. Loop's thread.
    using Token = std::shared_ptr<void>;
    enum class Readiness {
        readable,
        exceptional ///< POLLPRI, as the kernel's mount table signals
    };

    virtual ~MainLoop() = default;

    /// Calls `f` on the loop's thread, later, in the order of the calls. Any thread.
    virtual void post(std::function<void()> f) = 0;
    /// Calls `f` once, after `delay`.
    [[nodiscard]] virtual Token after(std::chrono::milliseconds delay, std::function<void()> f) = 0;
    /// Calls `f` again and again, `period` apart.
    [[nodiscard]] virtual Token every(std::chrono::milliseconds period, std::function<void()> f) = 0;
    /// Calls `f` whenever the descriptor is ready, until what made it so was taken away.
    [[nodiscard]] virtual Token watch(int descriptor, Readiness readiness, std::function<void()> f) = 0;
};

} // namespace vh

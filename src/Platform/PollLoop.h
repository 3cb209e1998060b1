#pragma once

#include "Platform/CancelToken.h"
#include "Platform/MainLoop.h"

#include <memory>

namespace vh {

/// A main loop of its own for programs without a window, on the thread that calls run.
class PollLoop : public MainLoop {
public:
    /// Throws SystemError.
    PollLoop();
    ~PollLoop() override;

    /// Works until stop was called. At rest it sleeps.
    void run();
    /// Works until `cancel` is set too, which it notices at once when a signal set it and within 100 ms otherwise.
    void run(const CancelToken& cancel);
    /// Makes run return. Any thread.
    void stop();

    void post(std::function<void()> f) override;
    Token after(std::chrono::milliseconds delay, std::function<void()> f) override;
    Token every(std::chrono::milliseconds period, std::function<void()> f) override;
    Token watch(int descriptor, Readiness readiness, std::function<void()> f) override;

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace vh

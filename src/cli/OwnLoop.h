#pragma once

#include "Automation/Automation.h"
#include "Platform/PollLoop.h"

#include <functional>

namespace vh::app {
class Session;
}

namespace vh::cli {

/// A main loop and automation for one command, attached to the run log.
class OwnLoop {
public:
    explicit OwnLoop(app::Session& session);
    /// Follow-ups of what was run are done by then.
    ~OwnLoop();

    automation::Automation& automation() { return automation_; }
    MainLoop& loop() { return loop_; }
    /// Runs the loop until finish() was called; when `cancel` is set, calls `onCancel` once and goes on until then.
    void run(const CancelToken& cancel, const std::function<void()>& onCancel);
    void finish();

private:
    PollLoop loop_;
    automation::Automation automation_;
    bool isFinished_ = false;
};

} // namespace vh::cli

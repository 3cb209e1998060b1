#include "cli/OwnLoop.h"

#include "app/SessionAutomation.h"

namespace vh::cli {

OwnLoop::OwnLoop(app::Session& session) : automation_(app::automationDependencies(session, loop_)) {
    automation_.attach();
}

OwnLoop::~OwnLoop() {
    automation_.finish();
}

void OwnLoop::run(const CancelToken& cancel, const std::function<void()>& onCancel) {
    if (!isFinished_)
        loop_.run(cancel);
    if (!isFinished_) {
        onCancel();
        loop_.run();
    }
}

void OwnLoop::finish() {
    isFinished_ = true;
    loop_.stop();
}

} // namespace vh::cli

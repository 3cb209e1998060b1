#pragma once

#include "Platform/MainLoop.h"

#include <QObject>

namespace vh::app {

/// The window's event loop as what automation waits with. Belongs to the main thread.
class QtLoop : public MainLoop {
public:
    void post(std::function<void()> f) override;
    Token after(std::chrono::milliseconds delay, std::function<void()> f) override;
    Token every(std::chrono::milliseconds period, std::function<void()> f) override;
    Token watch(int descriptor, Readiness readiness, std::function<void()> f) override;

private:
    QObject here_; ///< what is posted and not yet called goes with it
};

} // namespace vh::app

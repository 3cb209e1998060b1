#include "app/QtLoop.h"

#include <QSocketNotifier>
#include <QTimer>

namespace vh::app {

namespace {

/// An object may be let go of in a call that it made itself, so it goes a little later.
template <class Object>
MainLoop::Token tokenOf(Object* object) {
    return {object, [](Object* gone) {
                gone->disconnect();
                gone->deleteLater();
            }};
}

MainLoop::Token timer(std::chrono::milliseconds interval, bool once, std::function<void()> f) {
    auto* timer = new QTimer;
    timer->setSingleShot(once);
    QObject::connect(timer, &QTimer::timeout, timer, std::move(f));
    timer->start(interval);
    return tokenOf(timer);
}

} // namespace

void QtLoop::post(std::function<void()> f) {
    QMetaObject::invokeMethod(&here_, std::move(f), Qt::QueuedConnection);
}

MainLoop::Token QtLoop::after(std::chrono::milliseconds delay, std::function<void()> f) {
    return timer(delay, true, std::move(f));
}

MainLoop::Token QtLoop::every(std::chrono::milliseconds period, std::function<void()> f) {
    return timer(period, false, std::move(f));
}

MainLoop::Token QtLoop::watch(int descriptor, Readiness readiness, std::function<void()> f) {
    const auto type = readiness == Readiness::readable ? QSocketNotifier::Read : QSocketNotifier::Exception;
    auto* notifier = new QSocketNotifier(descriptor, type);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [f = std::move(f)] { f(); });
    // Its descriptor may be closed as soon as the token has gone.
    return {notifier, [token = tokenOf(notifier)](QSocketNotifier* gone) {
                gone->setEnabled(false);
            }};
}

} // namespace vh::app

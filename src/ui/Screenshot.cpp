#include "ui/Screenshot.h"

#include "ui/PageLooks.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QQuickWindow>
#include <QTimer>

#include <functional>

namespace vh::ui {

namespace {

/// How long a page may take to come to rest, and how long rest has to last (layouts settle over a few frames), in ms.
constexpr qint64 limit = 60'000;
constexpr qint64 stillFor = 120;
constexpr int pause = 10;

bool waitUntil(const std::function<bool()>& holds) {
    QElapsedTimer started;
    QElapsedTimer still;
    started.start();
    while (started.elapsed() < limit) {
        QEventLoop loop;
        QTimer::singleShot(pause, &loop, &QEventLoop::quit);
        loop.exec();
        if (!holds())
            still.invalidate();
        else if (!still.isValid())
            still.start();
        else if (still.elapsed() > stillFor)
            return true;
    }
    return false;
}

} // namespace

QString takeScreenshot(QQuickWindow& window, const QString& file, const QString& state) {
    const auto isSettled = [&] {
        return window.property("settled").toBool();
    };
    if (!waitUntil(isSettled))
        return QStringLiteral("The page did not come to rest within a minute.");
    if (!state.isEmpty()) {
        if (!showLook(window, state))
            return QStringLiteral(
                       "This page has no state \"%1\", or nothing to show in it. Its states are: %2.")
                .arg(state, looksOf(window).join(QStringLiteral(", ")));
        if (!waitUntil(isSettled))
            return QStringLiteral("The page did not come to rest within a minute.");
    }
    if (!window.grabWindow().save(file, "PNG"))
        return QStringLiteral("%1: the picture could not be written.").arg(file);
    return {};
}

} // namespace vh::ui

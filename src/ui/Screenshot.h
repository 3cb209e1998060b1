#pragma once

#include <QString>

class QQuickWindow;

namespace vh::ui {

/// Waits until the window's page has nothing under way, takes it to `state` where one is named, and writes its
/// picture to `file`. Empty on success, else what went wrong, for people. Runs the event loop while it waits.
[[nodiscard]] QString takeScreenshot(QQuickWindow& window, const QString& file, const QString& state);

} // namespace vh::ui

#pragma once

#include "ui/App.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <memory>

namespace vh::ui {

/// Before the QGuiApplication: draws without a display.
void useNoDisplay();

/// The window with its engine. Needs a QGuiApplication; main thread.
class Window {
public:
    Window(app::Session& session, const LookOverride& look);

    /// False for a page that does not exist; the window then stays as it is.
    bool open(const QString& page);
    /// Shows it before all others.
    void come();
    /// All that open() knows, tools last.
    QStringList pages() const;
    App& app() { return app_; }
    QQuickWindow& quickWindow() { return *window_; }

private:
    App app_;
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
};

} // namespace vh::ui

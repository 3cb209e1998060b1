#pragma once

#include "app/Session.h"
#include "support/TempDir.h"
#include "ui/Window.h"

#include <QQuickItem>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace vh::test {

/// A home of its own with something to clean in it, and a window over it. What Qt and QML warn of is gathered.
class WindowFixture : public testing::Test {
protected:
    WindowFixture();
    ~WindowFixture() override;

    /// Three caches of 1000, 2000 and 3000 bytes, called "small", "middle" and "large".
    void fillCaches();
    ui::Window& openWindow(const ui::LookOverride& look = {}, QSize size = {1280, 820});
    ui::Window& window() { return *window_; }
    /// Opens a page and waits until it has nothing under way.
    void openPage(const QString& id);
    void waitUntil(const char* what, const std::function<bool()>& holds);
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    /// All items that are shown, from the window's root down, in the order of the tree.
    std::vector<QQuickItem*> shownItems() const;
    /// The item that has the keyboard.
    QQuickItem* focused() const { return window_->quickWindow().activeFocusItem(); }
    QObject& junk() { return *window_->app().scanClean(QStringLiteral("system-junk")); }

    const QStringList& warnings() const { return warnings_; }
    const TempDir& home() const { return home_; }

private:
    TempDir home_;
    QStringList warnings_;
    std::optional<app::Session> session_;
    std::optional<ui::Window> window_;
};

/// The name that assistive programs read of an item; empty when it has none.
QString accessibleName(QQuickItem* item);

} // namespace vh::test

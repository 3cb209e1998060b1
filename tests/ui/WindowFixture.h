#pragma once

#include "app/Session.h"
#include "support/TempDir.h"
#include "ui/Window.h"

#include <QQuickItem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>

/// For messages of failed checks.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& list, std::ostream* out) {
    *out << '[' << list.join(QStringLiteral(" | ")).toStdString() << ']';
}

namespace vh::test {

/// The name that assistive programs read of an item; empty when it has none.
QString accessibleName(QQuickItem* item);

/// A home of its own with something to clean in it, and a window over it. Whatever Qt or QML warns of fails the test.
class WindowFixture : public testing::Test {
protected:
    WindowFixture();
    ~WindowFixture() override;
    void TearDown() override;

    /// Three caches of 1000, 2000 and 3000 bytes, called "small", "middle" and "large".
    void fillCaches();
    ui::Window& openWindow(const ui::LookOverride& look = {}, QSize size = {1280, 820});
    ui::Window& window() { return *window_; }
    /// Opens a page and waits until it has nothing under way.
    void openPage(const QString& id);
    /// False when the page has no such look, or nothing to show in it.
    bool showLook(const QString& name);
    /// What a person does, in the words of the page's own file.
    void inPage(const QString& way);
    void waitUntil(const char* what, const std::function<bool()>& holds);
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    /// All items that are shown, from the window's root down, in the order of the tree.
    std::vector<QQuickItem*> shownItems();
    /// The item that has the keyboard.
    QQuickItem* focused() { return window_->quickWindow().activeFocusItem(); }
    QString focusedName() { return focused() ? accessibleName(focused()) : QString(); }
    /// Presses Tab until what has a name that begins so has the keyboard.
    void tabTo(const QString& name);
    void waitForFocus(const QString& name);
    /// Drops a file or a folder onto the item with this name.
    void drop(const std::string& path, const QString& name);
    QObject& junk() { return *window_->app().scanClean(QStringLiteral("system-junk")); }

    const TempDir& home() const { return home_; }

private:
    void setVariable(const char* name, const std::optional<QByteArray>& value);

    TempDir home_;
    std::map<std::string, std::optional<QByteArray>> variablesBefore_;
    QStringList warnings_;
    std::optional<app::Session> session_;
    std::optional<ui::Window> window_;
};

} // namespace vh::test

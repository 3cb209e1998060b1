#include "ui/WindowFixture.h"

#include "ui/PageLooks.h"

#include "support/Sandbox.h"

#include <QAccessible>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QQmlContext>
#include <QQmlExpression>
#include <QTest>
#include <algorithm>

namespace vh::test {

namespace {

QStringList* gathered = nullptr;

void gather(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type != QtDebugMsg && type != QtInfoMsg && gathered)
        *gathered << message;
}

void putVariable(const char* name, const std::optional<QByteArray>& value) {
    if (value)
        qputenv(name, *value);
    else
        qunsetenv(name);
}

void addShown(QQuickItem* item, std::vector<QQuickItem*>& list) {
    if (!item->isVisible())
        return;
    list.push_back(item);
    for (auto* child : item->childItems())
        addShown(child, list);
}

} // namespace

WindowFixture::WindowFixture() {
    const auto temporary = QString::fromStdString(home_ / "tmp");
    QDir().mkpath(temporary);
    setVariable("TMPDIR", temporary.toUtf8());
    for (const auto* name : {"HOME", "XDG_RUNTIME_DIR"})
        setVariable(name, QByteArray::fromStdString(home_.path()));
    for (const auto* name : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        setVariable(name, std::nullopt);
    setVariable("LC_ALL", "C.UTF-8");
    // Nobody answers there: passwords stay in this home.
    for (const auto* name : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
        setVariable(name, QByteArray::fromStdString("unix:path=" + (home_ / "no-bus")));
    gathered = &warnings_;
    qInstallMessageHandler(gather);
}

WindowFixture::~WindowFixture() {
    window_.reset();
    // Rows that a list let go of are moving still, and must not until the next test.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    session_.reset();
    qInstallMessageHandler(nullptr);
    gathered = nullptr;
    for (const auto& [name, value] : variablesBefore_)
        putVariable(name.c_str(), value);
}

void WindowFixture::setVariable(const char* name, const std::optional<QByteArray>& value) {
    variablesBefore_[name] = qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt;
    putVariable(name, value);
}

void WindowFixture::TearDown() {
    EXPECT_EQ(warnings_, QStringList());
}

void WindowFixture::fillCaches() {
    const auto caches = QString::fromStdString(home_ / ".cache");
    const std::pair<const char*, int> made[] = {{"small", 1000}, {"middle", 2000}, {"large", 3000}};
    for (const auto& [name, size] : made) {
        const auto folder = caches + QLatin1Char('/') + QLatin1String(name);
        ASSERT_TRUE(QDir().mkpath(folder));
        QFile file(folder + QStringLiteral("/data"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(QByteArray(size, 'x')), size);
        file.close();
        junk::test::age(file.fileName().toStdString()); // what is in use of late would be left alone
    }
}

ui::Window& WindowFixture::openWindow(const ui::LookOverride& look, QSize size) {
    session_.emplace();
    window_.emplace(*session_, look);
    window_->quickWindow().resize(size);
    window_->quickWindow().show();
    window_->quickWindow().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_->quickWindow()));
    return *window_;
}

void WindowFixture::openPage(const QString& id) {
    ASSERT_TRUE(window_->open(id)) << id.toStdString();
    waitUntil("the page has come to rest",
              [&] { return window_->quickWindow().property("settled").toBool(); });
}

bool WindowFixture::showLook(const QString& name) {
    return ui::showLook(window_->quickWindow(), name);
}

void WindowFixture::inPage(const QString& way) {
    auto* const page = window_->quickWindow().property("pageItem").value<QObject*>();
    QQmlExpression expression(qmlContext(page), page, way);
    expression.evaluate();
    EXPECT_FALSE(expression.hasError()) << expression.error().toString().toStdString();
}

void WindowFixture::waitUntil(const char* what, const std::function<bool()>& holds) {
    ASSERT_TRUE(QTest::qWaitFor(holds, 20'000)) << "waited in vain until " << what;
}

void WindowFixture::press(int key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&window_->quickWindow(), static_cast<Qt::Key>(key), modifiers);
}

void WindowFixture::tabTo(const QString& name) {
    for (int i = 0; i < 80 && !focusedName().startsWith(name); ++i)
        press(Qt::Key_Tab);
    ASSERT_TRUE(focusedName().startsWith(name)) << "Tab does not reach " << name.toStdString();
}

void WindowFixture::waitForFocus(const QString& name) {
    waitUntil(qPrintable(name + " has the keyboard"), [&] { return focusedName().startsWith(name); });
}

void WindowFixture::drop(const std::string& path, const QString& name) {
    const auto items = shownItems();
    const auto item = std::ranges::find(items, name, accessibleName);
    ASSERT_NE(item, items.end()) << name.toStdString();
    const QPointF where = (*item)->mapToScene((*item)->boundingRect().center());
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter(where.toPoint(), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QDropEvent drop(where, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window_->quickWindow(), &enter);
    QCoreApplication::sendEvent(&window_->quickWindow(), &drop);
}

std::vector<QQuickItem*> WindowFixture::shownItems() {
    std::vector<QQuickItem*> list;
    addShown(window_->quickWindow().contentItem(), list);
    return list;
}

QString accessibleName(QQuickItem* item) {
    const auto* interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

} // namespace vh::test

#include "ui/Window.h"

#include "Core/ToolCatalog.h"
#include "ui/IconProvider.h"

#include <QGuiApplication>
#include <QQuickStyle>
#include <QtPlugin>
#include <QtQml/QQmlExtensionPlugin>
#include <stdexcept>

Q_IMPORT_QML_PLUGIN(VarnholtPlugin)

namespace vh::ui {

void useNoDisplay() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

Window::Window(app::Session& session, const LookOverride& look) : app_(session, look) {
    // The system's own glyphs: at 13 px sharper than scaled outlines.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    // Only what Qt draws itself, such as a file dialog where the desktop has none.
    if (const auto basic = QStringLiteral("Basic"); QQuickStyle::name() != basic)
        QQuickStyle::setStyle(basic);
    app_.installIn(engine_);
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine_.addImageProvider(QStringLiteral("icons"), new IconProvider);
    engine_.load(QUrl(QStringLiteral("qrc:/qt/qml/Varnholt/shell/Main.qml")));
    window_ = engine_.rootObjects().isEmpty() ? nullptr
                                              : qobject_cast<QQuickWindow*>(engine_.rootObjects().front());
    if (!window_)
        throw std::runtime_error("The window could not be made; the messages above say why.");
}

bool Window::open(const QString& page) {
    bool known = false;
    QMetaObject::invokeMethod(window_, "open", Q_RETURN_ARG(bool, known), Q_ARG(QString, page));
    return known;
}

void Window::come() {
    QMetaObject::invokeMethod(window_, "come");
}

QStringList Window::pages() const {
    QVariant fixed;
    QMetaObject::invokeMethod(window_, "pageIds", Q_RETURN_ARG(QVariant, fixed));
    auto ids = fixed.toStringList();
    for (const auto& tool : ToolCatalog::all())
        ids << QString::fromUtf8(tool.id.data(), static_cast<qsizetype>(tool.id.size()));
    return ids;
}

} // namespace vh::ui

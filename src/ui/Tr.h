#pragma once

#include <QJSValue>
#include <QObject>
#include <QQmlEngine>

namespace vh::app {
class AppTexts;
} // namespace vh::app

namespace vh::ui {

/// The texts of the window: `Tr.t("cache.selected", {count: 3})`. The function itself is a property that changes with
/// the language, so that every binding which called it is worked out again. Main thread.
class Tr : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QJSValue t READ function NOTIFY changed)

public:
    explicit Tr(const app::AppTexts& texts) : texts_(texts) {}

    /// Gives QML the one of the engine's App.
    static Tr* create(QQmlEngine* engine, QJSEngine*);

    QJSValue function();
    Q_INVOKABLE QString text(const QString& key, const QJSValue& arguments = {}) const;

signals:
    void changed();

private:
    const app::AppTexts& texts_;
    QJSValue function_;
};

} // namespace vh::ui

#pragma once

#include "ui/SystemLook.h"

#include <QObject>
#include <QQmlEngine>
#include <QUrl>
#include <QVariantMap>
#include <map>
#include <memory>

namespace vh::app {
class AppContext;
class AutomationLife;
class ScanCleanViewModel;
class Session;
class ShellViewModel;
} // namespace vh::app

namespace vh::ui {

class Tr;

/// What the command line asks to be other than the settings say; empty where it says nothing.
struct LookOverride {
    QString appearance;
    QString language;
};

/// The way of the pages to their view-models, each made when a page first asks for it and kept as long as the
/// window, and what the system says of looks. Main thread.
class App : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QObject* shell READ shell CONSTANT)
    Q_PROPERTY(QVariantMap pages READ pages CONSTANT)
    Q_PROPERTY(QObject* automation READ automation CONSTANT)
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion CONSTANT)
    Q_PROPERTY(QString fontFamily READ fontFamily CONSTANT)
    Q_PROPERTY(QString fixedFontFamily READ fixedFontFamily CONSTANT)
    Q_PROPERTY(QString documentsFolder READ documentsFolder CONSTANT)

public:
    App(app::Session& session, const LookOverride& look);
    ~App() override;

    /// Gives QML the App that installIn put into the engine.
    static App* create(QQmlEngine* engine, QJSEngine*);
    void installIn(QQmlEngine& engine);

    QObject* shell();
    QObject* automation();
    app::AutomationLife& life() { return *life_; }
    Tr* tr() { return tr_.get(); }
    /// The view-model that a feature offers by this name; nothing for any other.
    Q_INVOKABLE QObject* model(const QString& name);
    Q_INVOKABLE QObject* scanClean(const QString& moduleId);
    /// The files of what features put into a place of another page, in the product's order.
    Q_INVOKABLE QStringList parts(const QString& place) const;
    /// The file of each page, by its identifier.
    QVariantMap pages() const;

    bool isDark() const;
    bool reducedMotion() const { return systemLook_.wantsLessMotion(); }
    QString fontFamily() const;
    QString fixedFontFamily() const;
    /// The home where there is no folder for documents.
    QString documentsFolder() const;
    /// Keys such as "Ctrl+N" as this system writes them.
    Q_INVOKABLE QString keyText(const QString& keys) const;
    /// The keys that ask for the menu of what has the keyboard.
    Q_INVOKABLE bool isMenuKey(int key, int modifiers) const;
    /// Into the clipboard.
    Q_INVOKABLE void copyText(const QString& text) const;
    /// The path of a file's URL; of any other, nothing.
    Q_INVOKABLE QString localPath(const QUrl& url) const { return url.toLocalFile(); }

    /// The URL of the folder a path leads to, with "~" for the home; of the one above where it is no folder.
    Q_INVOKABLE QUrl folderUrl(const QString& path) const;

signals:
    void darkChanged();

private:
    const QString appearance_; // empty: as the settings say
    std::unique_ptr<app::AppContext> context_;
    std::unique_ptr<app::AutomationLife> life_;
    SystemLook systemLook_;
    std::unique_ptr<Tr> tr_;
    std::unique_ptr<app::ShellViewModel> shell_;
    std::map<QString, std::unique_ptr<QObject>> models_;
    std::map<QString, std::unique_ptr<app::ScanCleanViewModel>> scanCleans_;
};

} // namespace vh::ui

#pragma once

#include "ui/SystemLook.h"

#include <QObject>
#include <QQmlEngine>
#include <QUrl>
#include <map>
#include <memory>

namespace vh::app {
class ActivityViewModel;
class AppContext;
class AutomationLife;
class FastCopyViewModel;
class FlowEditorViewModel;
class FlowListViewModel;
class FolderSyncViewModel;
class FollowUpsViewModel;
class HelperViewModel;
class HomeViewModel;
class MailViewModel;
class MaintenanceViewModel;
class OptimizeViewModel;
class ScanCleanViewModel;
class SchedulesViewModel;
class ScriptsViewModel;
class Session;
class SettingsViewModel;
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
    Q_PROPERTY(QObject* home READ home CONSTANT)
    Q_PROPERTY(QObject* activity READ activity CONSTANT)
    Q_PROPERTY(QObject* settings READ settings CONSTANT)
    Q_PROPERTY(QObject* automation READ automation CONSTANT)
    Q_PROPERTY(QObject* schedules READ schedules CONSTANT)
    Q_PROPERTY(QObject* scripts READ scripts CONSTANT)
    Q_PROPERTY(QObject* flows READ flows CONSTANT)
    Q_PROPERTY(QObject* flowEditor READ flowEditor CONSTANT)
    Q_PROPERTY(QObject* mail READ mail CONSTANT)
    Q_PROPERTY(QObject* followUps READ followUps CONSTANT)
    Q_PROPERTY(QObject* helper READ helper CONSTANT)
    Q_PROPERTY(QObject* maintenance READ maintenance CONSTANT)
    Q_PROPERTY(QObject* optimize READ optimize CONSTANT)
    Q_PROPERTY(QObject* fastCopy READ fastCopy CONSTANT)
    Q_PROPERTY(QObject* folderSync READ folderSync CONSTANT)
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
    QObject* home();
    QObject* activity();
    QObject* settings();
    QObject* automation();
    QObject* schedules();
    QObject* scripts();
    QObject* flows();
    QObject* flowEditor();
    QObject* mail();
    QObject* followUps();
    QObject* helper();
    QObject* maintenance();
    QObject* optimize();
    QObject* fastCopy();
    QObject* folderSync();
    app::AutomationLife& life() { return *life_; }
    Tr* tr() { return tr_.get(); }
    Q_INVOKABLE QObject* scanClean(const QString& moduleId);

    bool isDark() const;
    bool reducedMotion() const { return systemLook_.wantsLessMotion(); }
    QString fontFamily() const;
    QString fixedFontFamily() const;
    /// The home where there is no folder for documents.
    QString documentsFolder() const;
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
    std::unique_ptr<app::SettingsViewModel> settings_;
    std::unique_ptr<app::ShellViewModel> shell_;
    std::unique_ptr<app::HomeViewModel> home_;
    std::unique_ptr<app::ActivityViewModel> activity_;
    std::unique_ptr<app::SchedulesViewModel> schedules_;
    std::unique_ptr<app::ScriptsViewModel> scripts_;
    std::unique_ptr<app::FlowListViewModel> flows_;
    std::unique_ptr<app::FlowEditorViewModel> flowEditor_;
    std::unique_ptr<app::MailViewModel> mail_;
    std::unique_ptr<app::FollowUpsViewModel> followUps_;
    std::unique_ptr<app::HelperViewModel> helper_;
    std::unique_ptr<app::MaintenanceViewModel> maintenance_;
    std::unique_ptr<app::OptimizeViewModel> optimize_;
    std::unique_ptr<app::FastCopyViewModel> fastCopy_;
    std::unique_ptr<app::FolderSyncViewModel> folderSync_;
    std::map<QString, std::unique_ptr<app::ScanCleanViewModel>> scanCleans_;
};

} // namespace vh::ui

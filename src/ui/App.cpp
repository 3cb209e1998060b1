#include "ui/App.h"

#include "Automation/Automation.h"
#include "Core/Language.h"
#include "Features/Activity/view/ActivityViewModel.h"
#include "Features/Flows/view/FlowEditorViewModel.h"
#include "Features/Flows/view/FlowListViewModel.h"
#include "Features/FollowUps/view/FollowUpsViewModel.h"
#include "Features/FollowUps/view/MailViewModel.h"
#include "Features/HelperSetup/view/HelperViewModel.h"
#include "Features/Home/view/HomeViewModel.h"
#include "Features/Optimize/view/OptimizeViewModel.h"
#include "Features/Schedules/view/SchedulesViewModel.h"
#include "Features/Scripts/view/ScriptsViewModel.h"
#include "Features/Settings/view/SettingsViewModel.h"
#include "HelperKit/MaintenanceWork.h"
#include "Tools/FastCopy/view/FastCopyViewModel.h"
#include "Tools/FolderSync/view/FolderSyncViewModel.h"
#include "Tools/Maintenance/view/MaintenanceViewModel.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/AutomationLife.h"
#include "app/ModuleRegistry.h"
#include "app/ScanCleanViewModel.h"
#include "app/Session.h"
#include "app/ShellViewModel.h"
#include "ui/Tr.h"

#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QStandardPaths>

namespace vh::ui {

namespace {

constexpr auto engineProperty = "varnholtApp";

template <class ViewModel, class... Arguments>
QObject* made(std::unique_ptr<ViewModel>& place, Arguments&&... arguments) {
    if (!place) {
        place = std::make_unique<ViewModel>(std::forward<Arguments>(arguments)...);
        QJSEngine::setObjectOwnership(place.get(), QJSEngine::CppOwnership);
    }
    return place.get();
}

} // namespace

App::App(app::Session& session, const LookOverride& look) : appearance_(look.appearance) {
    if (const auto language = languageOfTag(look.language.toStdString()))
        session.useLanguage(*language);
    context_ = std::make_unique<app::AppContext>(session);
    life_ = std::make_unique<app::AutomationLife>(*context_);
    QJSEngine::setObjectOwnership(life_.get(), QJSEngine::CppOwnership);
    tr_ = std::make_unique<Tr>(context_->texts());
    settings_ = std::make_unique<app::SettingsViewModel>(*context_);
    QJSEngine::setObjectOwnership(settings_.get(), QJSEngine::CppOwnership);
    connect(&context_->texts(), &app::AppTexts::changed, tr_.get(), &Tr::changed);
    connect(settings_.get(), &app::SettingsViewModel::appearanceChanged, this, &App::darkChanged);
    connect(&systemLook_, &SystemLook::changed, this, &App::darkChanged);
}

App::~App() = default;

App* App::create(QQmlEngine* engine, QJSEngine*) {
    auto* app = engine->property(engineProperty).value<App*>();
    QJSEngine::setObjectOwnership(app, QJSEngine::CppOwnership);
    return app;
}

void App::installIn(QQmlEngine& engine) {
    engine.setProperty(engineProperty, QVariant::fromValue(this));
}

QObject* App::settings() {
    return settings_.get();
}

QObject* App::shell() {
    return made(shell_, *context_);
}

QObject* App::home() {
    return made(home_, *context_);
}

QObject* App::activity() {
    return made(activity_, *context_);
}

QObject* App::automation() {
    return life_.get();
}

QObject* App::schedules() {
    return made(schedules_, *context_, *life_);
}

QObject* App::scripts() {
    return made(scripts_, *context_, *life_);
}

QObject* App::flows() {
    return made(flows_, *context_, life_->automation());
}

QObject* App::flowEditor() {
    return made(flowEditor_, *context_, life_->automation());
}

QObject* App::mail() {
    return made(mail_, *context_, *life_);
}

QObject* App::followUps() {
    return made(followUps_, *context_, *life_);
}

QObject* App::maintenance() {
    return made(maintenance_, *context_, helper::MaintenanceWork(&context_->session().helper()));
}

QObject* App::helper() {
    return made(helper_, *context_, context_->session().helper());
}

QObject* App::optimize() {
    return made(optimize_, *context_, *life_);
}

QObject* App::fastCopy() {
    return made(fastCopy_, *context_, *life_, app::CopyWorld::of(*context_));
}

QObject* App::folderSync() {
    return made(folderSync_, *context_, life_->automation().sync());
}

QObject* App::scanClean(const QString& moduleId) {
    return made(scanCleans_[moduleId], *context_,
                context_->session().registry().module(moduleId.toStdString()));
}

bool App::isDark() const {
    const auto appearance = appearance_.isEmpty() ? settings_->appearance() : appearance_;
    return appearance == QLatin1String("system") ? systemLook_.isDark() : appearance == QLatin1String("dark");
}

QString App::fontFamily() const {
    const auto inter = QStringLiteral("Inter");
    return QFontDatabase::hasFamily(inter) ? inter : QGuiApplication::font().family();
}

QString App::fixedFontFamily() const {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

QString App::documentsFolder() const {
    const auto documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(documents).exists() ? documents : QDir::homePath();
}

QUrl App::folderUrl(const QString& path) const {
    const bool isUnderHome = path == QLatin1String("~") || path.startsWith(QLatin1String("~/"));
    const QFileInfo place(isUnderHome ? QDir::homePath() + path.mid(1) : path);
    return QUrl::fromLocalFile(place.isDir() ? place.filePath() : place.path());
}

} // namespace vh::ui

#include "ui/App.h"

#include "app/ActivityViewModel.h"
#include "app/HomeViewModel.h"
#include "app/ScanCleanViewModel.h"
#include "app/Session.h"
#include "app/SettingsViewModel.h"
#include "app/ShellViewModel.h"
#include "ui/Tr.h"

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

App::App(app::Session& session, LookOverride override)
    : session_(session), override_(std::move(override)), tr_(std::make_unique<Tr>(session)),
      settings_(std::make_unique<app::SettingsViewModel>(session)) {
    QJSEngine::setObjectOwnership(settings_.get(), QJSEngine::CppOwnership);
    connect(settings_.get(), &app::SettingsViewModel::languageChanged, tr_.get(), &Tr::changed);
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
    return made(shell_, session_);
}

QObject* App::home() {
    return made(home_, session_);
}

QObject* App::activity() {
    return made(activity_, session_);
}

QObject* App::scanClean(const QString& moduleId) {
    return made(scanCleans_[moduleId], session_, moduleId);
}

bool App::isDark() const {
    const auto appearance = override_.appearance.isEmpty() ? settings_->appearance() : override_.appearance;
    return appearance == QLatin1String("system") ? systemLook_.isDark() : appearance == QLatin1String("dark");
}

QString App::fontFamily() const {
    const auto inter = QStringLiteral("Inter");
    return QFontDatabase::hasFamily(inter) ? inter : QGuiApplication::font().family();
}

QString App::documentsFolder() const {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

} // namespace vh::ui

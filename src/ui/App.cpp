#include "ui/App.h"

#include "Core/Language.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/Appearance.h"
#include "app/AutomationLife.h"
#include "app/ModuleRegistry.h"
#include "app/ScanCleanViewModel.h"
#include "app/Session.h"
#include "app/ShellViewModel.h"
#include "app/ViewOffer.h"
#include "ui/Tr.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QKeySequence>
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
    connect(&context_->texts(), &app::AppTexts::changed, tr_.get(), &Tr::changed);
    connect(&context_->appearance(), &app::Appearance::changed, this, &App::darkChanged);
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

QObject* App::shell() {
    return made(shell_, *context_);
}

QObject* App::automation() {
    return life_.get();
}

QObject* App::model(const QString& name) {
    if (const auto known = models_.find(name); known != models_.end())
        return known->second.get();
    for (const app::ViewOffer* offer : app::viewOffers())
        for (const app::ModelRow& row : offer->models)
            if (name == QLatin1String(row.name)) {
                QObject* model = (models_[name] = row.make({*context_, *life_})).get();
                QJSEngine::setObjectOwnership(model, QJSEngine::CppOwnership);
                return model;
            }
    return nullptr;
}

QStringList App::parts(const QString& place) const {
    QStringList files;
    for (const app::ViewOffer* offer : app::viewOffers())
        for (const app::PartRow& row : offer->parts)
            if (place == QLatin1String(row.place))
                files << QLatin1String(row.file);
    return files;
}

QVariantMap App::pages() const {
    QVariantMap files;
    for (const app::ViewOffer* offer : app::viewOffers())
        for (const app::PageRow& row : offer->pages)
            files[QLatin1String(row.page)] = QLatin1String(row.file);
    return files;
}

QObject* App::scanClean(const QString& moduleId) {
    return made(scanCleans_[moduleId], *context_,
                context_->session().registry().module(moduleId.toStdString()));
}

bool App::isDark() const {
    const auto appearance = appearance_.isEmpty() ? context_->appearance().value() : appearance_;
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

QString App::keyText(const QString& keys) const {
    return QKeySequence(keys).toString(QKeySequence::NativeText);
}

bool App::isMenuKey(int key, int modifiers) const {
    return key == Qt::Key_Menu || (key == Qt::Key_F10 && (modifiers & Qt::ShiftModifier) != 0);
}

void App::copyText(const QString& text) const {
    QGuiApplication::clipboard()->setText(text);
}

QUrl App::folderUrl(const QString& path) const {
    const bool isUnderHome = path == QLatin1String("~") || path.startsWith(QLatin1String("~/"));
    const QFileInfo place(isUnderHome ? QDir::homePath() + path.mid(1) : path);
    return QUrl::fromLocalFile(place.isDir() ? place.filePath() : place.path());
}

} // namespace vh::ui

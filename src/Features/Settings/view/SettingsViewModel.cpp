#include "Features/Settings/view/SettingsViewModel.h"

#include "Core/DatabaseKeep.h"
#include "Core/LocalCalendar.h"
#include "Core/UserDefaults.h"
#include "app/AppContext.h"
#include "app/AppTexts.h"
#include "app/Appearance.h"
#include "app/DatabaseCare.h"
#include "app/DayTexts.h"
#include "app/Options.h"
#include "app/PathText.h"
#include "app/RunLogWatch.h"
#include "app/Session.h"

#include <QCoreApplication>
#include <algorithm>

namespace vh::app {

namespace {

bool offers(const QVariantList& options, const QString& value) {
    return std::ranges::any_of(
        options, [&](const QVariant& each) { return each.toMap().value(QStringLiteral("value")) == value; });
}

/// What is stored; as the system has it when that is no longer, or not yet, to be had.
QString offered(const QVariantList& options, const std::string& stored) {
    const QString value = qtText(stored);
    return offers(options, value) ? value : QStringLiteral("system");
}

} // namespace

SettingsViewModel::SettingsViewModel(AppContext& context) : context_(context) {
    connect(&context_.texts(), &AppTexts::changed, this, &SettingsViewModel::languageChanged);
    connect(&context_.texts(), &AppTexts::changed, this, &SettingsViewModel::databaseChanged);
    connect(&context_.appearance(), &Appearance::changed, this, &SettingsViewModel::appearanceChanged);
}

DatabaseCare& SettingsViewModel::care() const {
    DatabaseCare& care = context_.databaseCare();
    connect(&care, &DatabaseCare::changed, this, &SettingsViewModel::databaseChanged, Qt::UniqueConnection);
    connect(&context_.runs(), &RunLogWatch::changed, &care, &DatabaseCare::measure, Qt::UniqueConnection);
    return care;
}

QString SettingsViewModel::language() const {
    return offered(languageOptions(), context_.texts().setting());
}

void SettingsViewModel::setLanguage(const QString& value) {
    if (value == language() || !offers(languageOptions(), value))
        return;
    store([&] { context_.texts().setSetting(value.toStdString()); });
}

QVariantList SettingsViewModel::languageOptions() const {
    QVariantList list{
        option(qtText(AppTexts::systemSetting), context_.texts().text("settings.language.system"))};
    for (const Language language : allLanguages)
        list << option(qtText(code(language)), qtText(Texts(language).text("settings.language.name")));
    return list;
}

QString SettingsViewModel::appearance() const {
    return context_.appearance().value();
}

void SettingsViewModel::setAppearance(const QString& value) {
    store([&] { context_.appearance().set(value); });
}

QVariantList SettingsViewModel::appearanceOptions() const {
    QVariantList list;
    for (const QString& value : Appearance::values())
        list << option(value, context_.texts().text("settings.appearance." + value.toStdString()));
    return list;
}

QString SettingsViewModel::databaseFolder() const {
    return displayPath(care().folder(), context_.session().folders().home);
}

QString SettingsViewModel::usageText() const {
    const AppTexts& texts = context_.texts();
    const auto& usage = care().usage();
    if (!usage)
        return texts.text("settings.usage.measuring");
    QString text = texts.text("settings.usage.text", {{"runs", usage->runs},
                                                      {"lists", usage->lists},
                                                      {"size", texts.sizeText(usage->bytes).toStdString()}});
    if (usage->oldest) {
        const QString day =
            DayTexts(texts.current(), context_.calendar(), context_.now()).brief(*usage->oldest);
        text += u' ' + texts.text("settings.usage.oldest", {{"day", day.toStdString()}});
    }
    return text;
}

QString SettingsViewModel::keepRuns() const {
    return qtText(rawValue(care().keepRuns()));
}

void SettingsViewModel::setKeepRuns(const QString& value) {
    if (const auto keep = fromRaw<Keep>(value.toStdString()))
        store([&] { care().setKeepRuns(*keep); });
}

QString SettingsViewModel::keepFiles() const {
    return qtText(rawValue(care().keepFiles()));
}

void SettingsViewModel::setKeepFiles(const QString& value) {
    if (const auto keep = fromRaw<Keep>(value.toStdString()))
        store([&] { care().setKeepFiles(*keep); });
}

QVariantList SettingsViewModel::keepOptions() const {
    QVariantList list;
    for (const Keep keep : allCases<Keep>())
        list << option(qtText(rawValue(keep)),
                       context_.texts().text("settings.keep." + std::string(rawValue(keep))));
    return list;
}

QString SettingsViewModel::moveFailure() const {
    return care().moveFailure();
}

QString SettingsViewModel::version() const {
    return QCoreApplication::applicationVersion();
}

void SettingsViewModel::moveDatabase(const QString& folder) {
    const std::string path = chosenPath(folder, context_.session().folders().home);
    if (path.empty())
        say(context_.texts().text("settings.move.no-path", {{"path", folder.toStdString()}}));
    else if (context_.session().runLog().wouldReplace(path))
        say(context_.texts().text("settings.move.occupied", {{"path", folder.toStdString()}}));
    else
        care().move(path);
}

void SettingsViewModel::prune() {
    care().prune();
}

bool SettingsViewModel::store(const std::function<void()>& change) {
    try {
        change();
        say({});
        return true;
    } catch (const std::exception& error) {
        say(context_.texts().errorText(error));
        return false;
    }
}

void SettingsViewModel::say(const QString& message) {
    if (message == message_)
        return;
    message_ = message;
    emit messageChanged();
}

} // namespace vh::app

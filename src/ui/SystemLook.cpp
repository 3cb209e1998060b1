#include "ui/SystemLook.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QSettings>
#include <QStandardPaths>

namespace vh::ui {

namespace {

bool paletteIsDark() {
    const auto palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

/// Qt 6.4 does not pass the desktops' wish on, so their own files are read: the newest one that says it counts.
bool desktopWantsLessMotion() {
    struct Source {
        const char* file;
        const char* key;
    };
    constexpr Source sources[] = {{"kdeglobals", "KDE/AnimationDurationFactor"},
                                  {"gtk-4.0/settings.ini", "Settings/gtk-enable-animations"},
                                  {"gtk-3.0/settings.ini", "Settings/gtk-enable-animations"}};
    for (const auto& source : sources) {
        const auto path =
            QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QLatin1String(source.file));
        if (path.isEmpty())
            continue;
        const auto value = QSettings(path, QSettings::IniFormat).value(QLatin1String(source.key)).toString();
        if (!value.isEmpty())
            return value == QLatin1String("0") || value == QLatin1String("false");
    }
    return false;
}

} // namespace

SystemLook::SystemLook(QObject* parent)
    : QObject(parent), dark_(paletteIsDark()), lessMotion_(desktopWantsLessMotion()) {
    qApp->installEventFilter(this);
}

bool SystemLook::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange && dark_ != paletteIsDark()) {
        dark_ = !dark_;
        emit changed();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace vh::ui

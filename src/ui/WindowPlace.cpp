#include "ui/WindowPlace.h"

#include "Core/UserDefaults.h"
#include "Platform/SystemError.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>
#include <algorithm>
#include <memory>
#include <vector>

namespace vh::ui {

namespace {

constexpr auto placeKey = "window.place"; // x, y, width, height
constexpr auto maximizedKey = "window.maximized";

/// As much of the upper edge as a hand needs to take hold of the window, in px.
constexpr QSize grip{120, 24};

void keep(const QRect& place, bool maximized, UserDefaults& defaults) {
    try {
        defaults.set(placeKey, std::vector<int>{place.x(), place.y(), place.width(), place.height()});
        defaults.set(maximizedKey, maximized);
    } catch (const SystemError&) {
        // The next window opens where windows open by themselves.
    }
}

} // namespace

QRect fittedPlace(const QRect& wanted, const QList<QRect>& areas) {
    if (areas.isEmpty())
        return {};
    const QRect edge(wanted.x(), wanted.y(), wanted.width(), grip.height());
    for (const QRect& area : areas) {
        const QRect held = area & edge;
        if (held.width() >= grip.width() && held.height() >= grip.height() &&
            wanted.width() <= area.width() && wanted.height() <= area.height())
            return wanted;
    }
    const QRect& area = areas.front();
    const QSize size = wanted.size().boundedTo(area.size());
    return {QPoint(std::clamp(wanted.x(), area.left(), area.right() + 1 - size.width()),
                   std::clamp(wanted.y(), area.top(), area.bottom() + 1 - size.height())),
            size};
}

void keepPlace(QQuickWindow& window, UserDefaults& defaults) {
    const auto last = defaults.get<std::vector<int>>(placeKey);
    if (last && last->size() == 4 && last->at(2) > 0 && last->at(3) > 0) {
        QList<QRect> areas;
        for (const QScreen* screen : QGuiApplication::screens())
            areas << screen->availableGeometry();
        const QRect place = fittedPlace({last->at(0), last->at(1), last->at(2), last->at(3)}, areas);
        if (place.isValid())
            window.setGeometry(place);
        if (defaults.get<bool>(maximizedKey).value_or(false))
            window.setWindowStates(Qt::WindowMaximized);
    }
    // Of a maximized window, the place that it goes back to.
    auto place = std::make_shared<QRect>(window.geometry());
    const auto note = [&window, place] {
        if (window.visibility() == QWindow::Windowed)
            *place = window.geometry();
    };
    for (const auto signal :
         {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged})
        QObject::connect(&window, signal, &window, note);
    QObject::connect(qApp, &QGuiApplication::aboutToQuit, &window, [&window, &defaults, place] {
        keep(*place, (window.windowStates() & Qt::WindowMaximized) != 0, defaults);
    });
}

} // namespace vh::ui

#pragma once

#include <QList>
#include <QRect>

class QQuickWindow;

namespace vh {
class UserDefaults;
}

namespace vh::ui {

/// Where a window goes that was last at `wanted`: there, when enough of its title can be reached on one of the free
/// `areas` of the screens; moved and shrunk onto the first area otherwise. No rectangle without an area.
QRect fittedPlace(const QRect& wanted, const QList<QRect>& areas);

/// Puts the window where the person left it, and keeps where it is left. Main thread; both outlive the window.
void keepPlace(QQuickWindow& window, UserDefaults& defaults);

} // namespace vh::ui

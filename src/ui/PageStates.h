#pragma once

#include <QString>

class QQuickWindow;

namespace vh::ui {

/// Takes the page that is open to a state in which it is pictured and tested: a sheet is open, a row is chosen. No state
/// runs, writes or removes anything. False for one that the page does not have, or that has nothing to show.
bool showState(QQuickWindow& window, const QString& state);

/// The states of a page, for messages.
QStringList statesOf(const QString& page);

} // namespace vh::ui

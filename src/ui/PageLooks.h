#pragma once

#include <QString>

class QQuickWindow;

namespace vh::ui {

/// Takes the page that is open to one of its `looks`, such as a sheet that is open or a row that is chosen. False for
/// one that the page does not have, or that has nothing to show.
bool showLook(QQuickWindow& window, const QString& look);

/// The looks of the page that is open, by name.
QStringList looksOf(const QQuickWindow& window);

} // namespace vh::ui

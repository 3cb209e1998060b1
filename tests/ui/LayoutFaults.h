#pragma once

#include <QQuickItem>
#include <QStringList>
#include <vector>

namespace vh::test {

/// What a person would see at once: texts that are cut, things that hang out of their card, and controls that cover each
/// other. `items` are those that are shown; what is scrolled out of view is left alone.
QStringList layoutFaults(const std::vector<QQuickItem*>& items);

} // namespace vh::test

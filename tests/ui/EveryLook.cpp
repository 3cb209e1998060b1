#include "ui/EveryLook.h"

namespace vh::test {

QStringList namelessStops(const std::vector<QQuickItem*>& items) {
    QStringList nameless;
    for (auto* item : items)
        if (item->activeFocusOnTab() && accessibleName(item).isEmpty())
            nameless << QString::fromLatin1(item->metaObject()->className());
    return nameless;
}

} // namespace vh::test

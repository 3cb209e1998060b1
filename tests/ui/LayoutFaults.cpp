#include "ui/LayoutFaults.h"

#include <algorithm>

namespace vh::test {

namespace {

/// In px. A path or a name of a person's own may be shortened in the middle, but so much of it has to stay.
constexpr qreal leastOfAName = 72;
constexpr qreal tolerance = 1.5;

bool isA(const QQuickItem* item, const char* component) {
    return QByteArrayView(item->metaObject()->className()).startsWith(component);
}

bool isControl(const QQuickItem* item) {
    return item->inherits("QQuickAbstractButton") || item->inherits("QQuickTextField") ||
           item->inherits("QQuickComboBox");
}

QRectF placeOf(const QQuickItem* item) {
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

/// The part of an item that its clipping parents let through.
QRectF seenOf(const QQuickItem* item) {
    QRectF seen = placeOf(item);
    for (const auto* up = item->parentItem(); up; up = up->parentItem())
        if (up->clip())
            seen &= placeOf(up);
    return seen;
}

/// The sheet, menu or passing word that an item is on; null on the page itself.
const QQuickItem* floorOf(const QQuickItem* item) {
    for (; item; item = item->parentItem())
        if (item->inherits("QQuickPopupItem") || isA(item, "Toast_"))
            return item;
    return nullptr;
}

QString nameOf(const QQuickItem* item) {
    const auto text = item->property("text").toString();
    return (text.isEmpty() ? QString::fromLatin1(item->metaObject()->className()) : text) +
           QStringLiteral(" (%1)").arg(
               QString::fromLatin1(item->metaObject()->className()).section('_', 0, 0));
}

void addCutText(const QQuickItem* item, QStringList& faults) {
    if (!item->property("truncated").toBool())
        return;
    const bool isShortenedOnPurpose = item->property("elide").toInt() == Qt::ElideMiddle;
    if (!isShortenedOnPurpose || item->width() < leastOfAName)
        faults << QStringLiteral("cut: ") + nameOf(item);
}

/// Words and controls stay inside of the nearest card or sheet, unless something between scrolls.
void addHanging(const QQuickItem* item, QStringList& faults) {
    if (!isControl(item) && !item->inherits("QQuickText"))
        return;
    for (const auto* up = item->parentItem(); up && !up->clip(); up = up->parentItem()) {
        if (!isA(up, "Card_") && !up->inherits("QQuickPopupItem"))
            continue;
        const QRectF room = placeOf(up).adjusted(-tolerance, -tolerance, tolerance, tolerance);
        if (!seenOf(item).isEmpty() && !room.contains(placeOf(item)))
            faults << QStringLiteral("hangs out: ") + nameOf(item);
        return;
    }
}

/// Rows of one list: those that wait to be used again lie where they were, out of sight.
bool areRowsOfOneList(const QQuickItem* a, const QQuickItem* b) {
    for (const auto* up = a->parentItem(); up; up = up->parentItem())
        if (up->isAncestorOf(b))
            return up->parentItem() && up->parentItem()->property("reuseItems").toBool();
    return false;
}

bool isText(const QQuickItem* item) {
    return item->inherits("QQuickText") && !item->property("text").toString().isEmpty();
}

/// Of a text the part that has letters, as it is seen.
QRectF inkOf(const QQuickItem* item) {
    const qreal width = std::min(item->property("contentWidth").toReal(), item->width());
    const qreal height = std::min(item->property("contentHeight").toReal(), item->height());
    const int align = item->property("effectiveHorizontalAlignment").toInt();
    const int vertical = item->property("verticalAlignment").toInt();
    const qreal free = item->width() - width, above = item->height() - height;
    const qreal x = align == Qt::AlignRight ? free : align == Qt::AlignHCenter ? free / 2 : 0;
    const qreal y = vertical == Qt::AlignBottom ? above : vertical == Qt::AlignVCenter ? above / 2 : 0;
    return item->mapRectToScene(QRectF(x, y, width, height)) & seenOf(item);
}

/// Of each two of these that `rectOf` finds at one place.
void addCovered(const std::vector<QQuickItem*>& items, bool (*isMeant)(const QQuickItem*),
                QRectF (*rectOf)(const QQuickItem*), QStringList& faults) {
    std::vector<QQuickItem*> those;
    std::ranges::copy_if(items, std::back_inserter(those), isMeant);
    for (size_t i = 0; i < those.size(); ++i)
        for (size_t k = i + 1; k < those.size(); ++k) {
            const auto *a = those[i], *b = those[k];
            const QRectF both = rectOf(a) & rectOf(b);
            if (both.width() <= tolerance || both.height() <= tolerance)
                continue;
            if (floorOf(a) == floorOf(b) && !a->isAncestorOf(b) && !b->isAncestorOf(a) &&
                !areRowsOfOneList(a, b))
                faults << QStringLiteral("cover each other: ") + nameOf(a) + QStringLiteral(", ") + nameOf(b);
        }
}

} // namespace

QStringList layoutFaults(const std::vector<QQuickItem*>& items) {
    QStringList faults;
    for (const auto* item : items) {
        addCutText(item, faults);
        addHanging(item, faults);
    }
    addCovered(items, isControl, seenOf, faults);
    addCovered(items, isText, inkOf, faults);
    return faults;
}

} // namespace vh::test

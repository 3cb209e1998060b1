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

/// The sheet or menu that an item is on; null on the page itself.
const QQuickItem* floorOf(const QQuickItem* item) {
    for (; item; item = item->parentItem())
        if (item->inherits("QQuickPopupItem"))
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

void addCovered(const std::vector<QQuickItem*>& items, QStringList& faults) {
    std::vector<QQuickItem*> controls;
    std::ranges::copy_if(items, std::back_inserter(controls), isControl);
    for (size_t i = 0; i < controls.size(); ++i)
        for (size_t k = i + 1; k < controls.size(); ++k) {
            const auto *a = controls[i], *b = controls[k];
            if (floorOf(a) != floorOf(b) || a->isAncestorOf(b) || b->isAncestorOf(a) ||
                areRowsOfOneList(a, b))
                continue;
            const QRectF both = seenOf(a) & seenOf(b);
            if (both.width() > tolerance && both.height() > tolerance)
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
    addCovered(items, faults);
    return faults;
}

} // namespace vh::test

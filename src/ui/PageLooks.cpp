#include "ui/PageLooks.h"

#include <QJSValueIterator>
#include <QQuickWindow>

namespace vh::ui {

namespace {

QJSValue looks(const QQuickWindow& window) {
    const auto* const page = window.property("pageItem").value<QObject*>();
    return page ? page->property("looks").value<QJSValue>() : QJSValue();
}

} // namespace

bool showLook(QQuickWindow& window, const QString& look) {
    const QJSValue way = looks(window).property(look);
    if (!way.isCallable())
        return false;
    const QJSValue shown = way.call();
    return !shown.isError() && (!shown.isBool() || shown.toBool());
}

QStringList looksOf(const QQuickWindow& window) {
    QStringList names;
    for (QJSValueIterator each(looks(window)); each.hasNext();) {
        each.next();
        names << each.name();
    }
    return names;
}

} // namespace vh::ui

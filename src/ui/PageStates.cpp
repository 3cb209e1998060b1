#include "ui/PageStates.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QQuickWindow>

namespace vh::ui {

namespace {

struct State {
    const char* page;
    const char* name;
    /// What a person would do, in the words of the page's own file; false when there is nothing to show.
    const char* way;
};

constexpr State states[] = {
    {"home", "all-tools", "allTools = true"},
    {"home", "absent", "absentShown = true"},
    {"home", "profile", "profile.open()"},
    {"home", "check", "checks.open()"},
    {"home", "last", "optimize.lastText !== '' && (last.open(), true)"},
    {"activity", "export", "activity.runCount > 0 && (exportSheet.open(), true)"},
    {"activity", "details", "table.count > 0 && (table.focusRow(0), table.opened(0), true)"},
    {"activity", "menu",
     "table.count > 0 && (table.focusRow(0), table.list.currentItem.offerActs(60, 30), true)"},
    {"schedules", "new", "edit('')"},
    {"schedules", "maintenance", "edit(''), form.put('action', 'maintenance')"},
    {"schedules", "selected", "table.count > 0 && (table.focusRow(0), true)"},
    {"schedules", "edit", "table.count > 0 && (table.focusRow(0), change(), true)"},
    {"schedules", "remove", "table.count > 0 && (table.focusRow(0), removal.open(), true)"},
    {"scripts", "new", "scripts.create()"},
    {"scripts", "open", "table.count > 0 && (scripts.open(scripts.scripts[0].name), true)"},
    {"scripts", "remove", "table.count > 0 && (scripts.open(scripts.scripts[0].name), removal.open(), true)"},
    {"settings", "move", "moveSheet.open()"},
    {"settings", "follow-ups", "followUps.show('system-junk')"},
    {"helper", "remove", "removal.open()"},
    {"fast-copy", "disks", "disks.openAt(choice)"},
    {"system-junk", "selected", "junk.itemCount > 0 && (junk.toggleSelectAll(), true)"},
    {"system-junk", "review", "junk.itemCount > 0 && (junk.toggleSelectAll(), junk.review(), true)"},
    {"maintenance", "selected", "table.count > 0 && (table.focusRow(0), true)"},
    {"sync", "form", "form.edit('', [])"},
    {"sync", "chosen", "hasPairs"},
    {"sync", "plan", "hasPairs && (folderSync.compare(), true)"},
    {"sync", "remove", "hasPairs && (removal.open(), true)"},
    {"nodos", "chosen",
     "flows.count > 0 && (list.item.focusFlow(flows.flows.data(flows.flows.index(0, 0), Qt.UserRole)), "
     "true)"},
    {"nodos", "editor",
     "flows.count > 0 && openFlow(flows.flows.data(flows.flows.index(0, 0), Qt.UserRole))"},
};

} // namespace

bool showState(QQuickWindow& window, const QString& state) {
    const QString page = window.property("page").toString();
    auto* const root = window.property("pageItem").value<QObject*>();
    for (const State& each : states) {
        if (page != QLatin1String(each.page) || state != QLatin1String(each.name) || !root)
            continue;
        QQmlExpression expression(qmlContext(root), root, QLatin1String(each.way));
        bool isUndefined = false;
        const QVariant shown = expression.evaluate(&isUndefined);
        return !expression.hasError() && (isUndefined || shown.typeId() != QMetaType::Bool || shown.toBool());
    }
    return false;
}

QStringList statesOf(const QString& page) {
    QStringList names;
    for (const State& each : states)
        if (page == QLatin1String(each.page))
            names << QLatin1String(each.name);
    return names;
}

} // namespace vh::ui

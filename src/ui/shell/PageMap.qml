import QtQuick
import Varnholt

// Which page shows what. A tool without a page of its own says plainly that it is not there yet.
QtObject {
    readonly property var fixed: standing.filter(page => page.id in own)
    // Those that are not in this version yet.
    readonly property var absent: standing.filter(page => !(page.id in own))
    readonly property var standing: [
        {id: "home", icon: "house", title: Tr.t("shell.page.home"), summary: ""},
        {id: "activity", icon: "waveform.path.ecg", title: Tr.t("shell.page.activity"), summary: ""},
        {id: "schedules", icon: "clock", title: Tr.t("shell.page.schedules"), summary: Tr.t("shell.page.schedules.summary")},
        {id: "nodos", icon: "point.topleft.down.to.point.bottomright", title: Tr.t("shell.page.nodos"), summary: Tr.t("shell.page.nodos.summary")},
        {id: "company", icon: "person.2", title: Tr.t("shell.page.company"), summary: Tr.t("shell.page.company.summary")},
        {id: "agent", icon: "bubble.left", title: Tr.t("shell.page.agent"), summary: Tr.t("shell.page.agent.summary")}
    ]

    // Pages that the sidebar's list does not show.
    readonly property var apart: [
        {id: "helper", icon: "lock.shield", title: Tr.t("helper-setup.title"), summary: Tr.t("helper-setup.line")},
        {id: "scripts", icon: "terminal", title: Tr.t("scripts.title"), summary: Tr.t("scripts.line")},
        {id: "settings", icon: "gearshape", title: Tr.t("shell.page.settings"), summary: Tr.t("settings.line")}
    ]
    readonly property var all: standing.concat(apart)

    readonly property var own: App.pages

    // The page that answers to an identifier, folded ones included, or to a tool's name; "" for none.
    function resolve(id: string): string {
        return all.some(page => page.id === id) ? id : App.shell.idOf(id);
    }

    // All but the tools.
    function ids(): var {
        return all.map(page => page.id);
    }

    // Which entry of the sidebar stands for a page.
    function entryOf(id: string): string {
        return id === "scripts" ? "nodos" : id === "helper" ? "settings" : id;
    }

    function source(id: string): url {
        return Qt.resolvedUrl(id in own ? "../pages/" + own[id] + ".qml" : "AbsentPage.qml");
    }

    function properties(id: string): var {
        return id in own ? {} : {pageId: id};
    }
}

import QtQuick
import Varnholt

// The chores of the system, each with what it does, and what the last one printed.
Page {
    id: page

    readonly property var maintenance: App.model("maintenance")

    function refresh() { maintenance.refresh(); }

    // What the button of a row does.
    function act(task: var) {
        if (maintenance.running === task.value)
            maintenance.stop();
        else if (task.missing !== "" || maintenance.running !== "")
            return;
        else if (task.requiresRoot && !maintenance.helperIsReady)
            page.navigate("helper");
        else
            maintenance.run(task.value);
    }

    title: App.shell.tool("maintenance").name
    line: Tr.t("maintenance-page.line")
    looks: ({
        selected: () => table.count > 0 && (table.focusRow(0), true)
    })
    settled: !maintenance.isLoading
    Component.onCompleted: maintenance.refresh()

    ListTable {
        id: table
        width: parent.width
        height: Math.min(parent.height - result.height - Theme.space16, list.contentHeight + 2 * Theme.space4 + 2)
        name: page.title
        model: page.maintenance.tasks
        delegate: MaintenanceRow {
            maintenance: page.maintenance
            onActed: page.act(modelData)
        }
        onOpened: row => page.act(page.maintenance.tasks[row])
    }
    MaintenanceResult {
        id: result
        anchors.bottom: parent.bottom
        width: parent.width
        // A line before there is anything to show.
        height: isEmpty ? Theme.rowHeightTwo + Theme.space8
            : Math.min(Theme.noticeHeight, Math.max(Theme.summaryHeight + Theme.rowHeightTwo, parent.height / 4))
        maintenance: page.maintenance
    }
}

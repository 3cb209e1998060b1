import QtQuick
import Varnholt

// All that was done on this computer, with what it touched and the way back.
Page {
    id: page

    readonly property var activity: App.model("activity")
    readonly property bool detailed: activity.selectedRun.runId !== undefined && activity.selectedRun.runId !== ""

    function goBack(): bool {
        if (!detailed)
            return false;
        activity.clearSelection();
        return true;
    }

    title: Tr.t("shell.page.activity")
    line: Tr.t("activity.line")
    looks: ({
        export: () => activity.runCount > 0 && (exportSheet.open(), true),
        details: () => table.count > 0 && (table.focusRow(0), table.opened(0), true),
        menu: () => table.count > 0 && (table.focusRow(0), table.list.currentItem.offerActs(60, 30), true)
    })

    actions: Button {
        iconName: "square.and.arrow.up"
        text: Tr.t("activity.export")
        enabled: page.activity.runCount > 0
        onClicked: exportSheet.open()
    }

    ActivityFilters {
        id: filters
        width: parent.width
        activity: page.activity
    }

    Label {
        id: totals
        anchors.top: filters.bottom
        anchors.topMargin: Theme.space12
        width: parent.width - (clear.visible ? clear.width : 0)
        height: Theme.itemHeight
        text: page.activity.totalsText
        color: Theme.second
    }
    Button {
        id: clear
        visible: page.activity.isFiltered
        anchors.right: parent.right
        anchors.verticalCenter: totals.verticalCenter
        height: Theme.itemHeight
        kind: "quiet"
        text: Tr.t("activity.clear-filter")
        onClicked: page.activity.clearFilter()
    }

    ListTable {
        id: table
        anchors.top: totals.bottom
        anchors.topMargin: Theme.space8
        anchors.bottom: parent.bottom
        width: parent.width - (page.detailed ? Theme.paneWidth + Theme.space16 : 0)
        name: page.title
        model: page.activity.runs
        header: count > 0 ? heading : null
        list.section.property: page.activity.order.key === "time" ? "dayText" : ""
        list.section.delegate: ActivityDay { width: table.width }
        delegate: ActivityRow {
            wide: table.width > Theme.wideWidth
            chosen: page.activity.selectedRun.runId === runId
            onClicked: page.activity.select(runId)
            acts: () => [
                {text: Tr.t("activity.menu.details"), icon: "info.circle", shortcut: "Return", act: () => page.activity.select(runId)},
                {text: Tr.t("activity.undo"), icon: "arrow.uturn.backward", shortcut: "Ctrl+Z",
                    enabled: chosen && page.activity.selectedRun.canUndo, act: () => page.activity.undo(runId)},
                {text: Tr.t("activity.menu.only-tool", {name: toolName}), icon: "line.3.horizontal.decrease",
                    act: () => page.activity.toolID = toolID},
                {text: Tr.t("activity.export"), icon: "square.and.arrow.up", act: () => exportSheet.open()}
            ]
        }
        onSelected: page.activity.select(list.currentItem.runId)
        onOpened: page.activity.select(list.currentItem.runId)
        onMoved: if (page.detailed) page.activity.select(list.currentItem.runId)

        Component {
            id: heading
            ActivityHeader {
                activity: page.activity
                wide: table.width > Theme.wideWidth
            }
        }
        EmptyState {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.space24
            visible: table.count === 0
            iconName: page.activity.isFiltered ? "line.3.horizontal.decrease" : "waveform.path.ecg"
            text: page.activity.isFiltered ? Tr.t("activity.no-match") : Tr.t("activity.empty")
            detail: page.activity.isFiltered ? "" : Tr.t("activity.empty.detail")
            actionText: page.activity.isFiltered ? Tr.t("activity.clear-filter") : ""
            onAction: page.activity.clearFilter()
        }
    }

    Loader {
        active: page.detailed
        anchors.right: parent.right
        anchors.top: table.top
        anchors.bottom: parent.bottom
        width: Theme.paneWidth
        sourceComponent: ActivityDetails { activity: page.activity }
    }

    ActivityExport {
        id: exportSheet
        activity: page.activity
        onSaved: path => page.said(Tr.t("activity.export.done", {path: path}))
    }
    Connections {
        target: page.activity
        function onMessageChanged() {
            if (page.activity.message !== "" && !exportSheet.visible)
                page.said(page.activity.message);
        }
    }
}

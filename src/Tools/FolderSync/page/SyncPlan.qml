import QtQuick
import Varnholt

// All that a sync would do, before it does it; while it does, what is done already.
Item {
    id: pane

    required property var folderSync

    readonly property int rowAtWork: folderSync.rowAtWork

    // What is at work stays in view, unless somebody is looking through the list.
    onRowAtWorkChanged: if (rowAtWork >= 0 && !table.list.activeFocus) table.list.positionViewAtIndex(rowAtWork, ListView.Contain)

    Item {
        id: tiles
        width: parent.width
        height: visible ? row.height : 0
        visible: pane.folderSync.actionCount > 0

        Row {
            id: row
            width: parent.width
            spacing: Theme.space8

            Repeater {
                id: kinds
                model: pane.folderSync.kinds

                SyncKindTile {
                    required property var modelData

                    width: (row.width - 3 * row.spacing) / 4
                    value: modelData.value
                    title: modelData.title
                    countText: modelData.countText
                    sizeText: modelData.sizeText
                    enabled: modelData.count > 0
                    chosen: pane.folderSync.kind === value
                    onClicked: pane.folderSync.kind = chosen ? "" : value
                }
            }
        }
    }
    ErrorNote {
        id: unread
        readonly property var lines: pane.folderSync.unreadable

        anchors.top: tiles.bottom
        anchors.topMargin: visible ? Theme.space12 : 0
        width: parent.width
        height: visible ? implicitHeight : 0
        visible: lines.length > 0
        title: Tr.t("sync-page.unreadable", {count: lines.length})
        text: lines.slice(0, 2).join("\n")
        kept: Tr.t("sync-page.unreadable.kept")
    }
    ListTable {
        id: table
        anchors.top: unread.bottom
        anchors.topMargin: tiles.visible || unread.visible ? Theme.space12 : 0
        width: parent.width
        height: Math.min(parent.height - y, wanted)
        readonly property real wanted: !tiles.visible ? parent.height - y
            : Theme.rowHeight * (1 + Math.max(3, count)) + 2 * Theme.space4 + 1
        name: Tr.t("sync-page.plan")
        model: pane.folderSync.plan
        header: tiles.visible ? heading : null
        delegate: SyncPlanRow {}

        Component {
            id: heading

            Item {
                SearchField {
                    x: Theme.space8
                    anchors.verticalCenter: parent.verticalCenter
                    height: Theme.itemHeight
                    width: Math.min(Theme.fieldWidth, parent.width / 2)
                    placeholderText: Tr.t("sync-page.search")
                    text: pane.folderSync.search
                    onTextChanged: pane.folderSync.search = text
                }
                SortHeading {
                    id: size
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.space16
                    width: Theme.sizeWidth
                    height: parent.height
                    numbers: true
                    key: "size"
                    text: Tr.t("sync-page.size")
                    order: pane.folderSync.order
                    onWanted: key => pane.folderSync.orderBy(key)
                }
                Label {
                    anchors.right: size.left
                    anchors.rightMargin: Theme.space12
                    anchors.verticalCenter: parent.verticalCenter
                    visible: parent.width > Theme.textWidth
                    text: pane.folderSync.unchangedText
                    font: Theme.label
                    color: Theme.second
                }
            }
        }
        EmptyState {
            readonly property bool isPlanning: pane.folderSync.phase === "planning"
            readonly property bool isRunning: pane.folderSync.phase === "running"
            readonly property bool isAlike: pane.folderSync.hasPlan && !tiles.visible && !unread.visible

            anchors.centerIn: parent
            width: parent.width - 2 * Theme.space24
            visible: !tiles.visible
            iconName: isAlike ? "checkmark" : isPlanning || isRunning ? "arrow.triangle.2.circlepath" : "magnifyingglass"
            text: isPlanning ? pane.folderSync.progressText
                : isRunning ? Tr.t("sync-page.running")
                : isAlike ? pane.folderSync.planText : Tr.t("sync-page.no-plan")
            detail: isPlanning ? Tr.t("sync-page.comparing.detail")
                : isRunning || table.height < Theme.noticeHeight - Theme.space24 ? "" : isAlike ? pane.folderSync.unchangedText : Tr.t("sync-page.no-plan.detail")
        }
        Label {
            anchors.centerIn: parent
            anchors.verticalCenterOffset: Theme.rowHeight / 2
            visible: tiles.visible && table.count === 0
            text: Tr.t("sync-page.no-match")
            color: Theme.second
        }
    }
}

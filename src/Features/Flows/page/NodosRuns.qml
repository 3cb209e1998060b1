import QtQuick
import QtQuick.Templates as T
import Varnholt

// The last runs; a click shows on the canvas how one went, another what goes on now.
Item {
    id: pane

    required property var editor

    implicitHeight: visible ? heading.height + Theme.space8 + list.contentHeight : 0
    visible: editor.runCount > 0

    Label {
        id: heading
        width: parent.width
        text: Tr.t("nodes-page.runs")
        font: Theme.label
        color: Theme.second
        Accessible.role: Accessible.Heading
    }
    ListView {
        id: list
        anchors.top: heading.bottom
        anchors.topMargin: Theme.space8
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true
        model: pane.editor.runs
        activeFocusOnTab: count > 0
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        currentIndex: -1
        Accessible.role: Accessible.List
        Accessible.name: heading.text
        onActiveFocusChanged: if (activeFocus && currentIndex < 0) currentIndex = 0
        Keys.onSpacePressed: pane.editor.showRun(currentItem.runId)
        Keys.onReturnPressed: pane.editor.showRun(currentItem.runId)
        Keys.onEnterPressed: pane.editor.showRun(currentItem.runId)
        T.ScrollBar.vertical: ScrollBar { quiet: true }

        delegate: TableRow {
            id: row
            required property string runId
            required property string outcome
            required property string outcomeTitle
            required property string timeText
            required property string triggerTitle
            required property string durationText
            required property bool shown
            required property bool canResume

            implicitHeight: Theme.rowHeight
            chosen: shown
            name: [timeText, outcomeTitle, triggerTitle, durationText].join(", ")
            onClicked: pane.editor.showRun(runId)

            Icon {
                id: shape
                x: -Theme.space4
                anchors.verticalCenter: parent.verticalCenter
                size: Theme.space12 + 2
                name: Theme.outcomeIcon(row.outcome)
                color: Theme.outcomeColor(row.outcome)
            }
            Label {
                anchors.left: shape.right
                anchors.leftMargin: Theme.space8
                anchors.right: again.visible ? again.left : duration.left
                anchors.verticalCenter: parent.verticalCenter
                text: row.timeText
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            Button {
                id: again
                visible: row.shown && row.canResume && !pane.editor.isRunning
                anchors.right: duration.left
                anchors.verticalCenter: parent.verticalCenter
                height: Theme.itemHeight
                kind: "quiet"
                text: Tr.t("nodes-page.resume")
                onClicked: pane.editor.resume(row.runId)
            }
            Label {
                id: duration
                anchors.right: parent.right
                anchors.rightMargin: -Theme.space4
                anchors.verticalCenter: parent.verticalCenter
                leftPadding: Theme.space8
                text: row.durationText
                color: Theme.second
                Accessible.ignored: true
            }
        }
    }
}

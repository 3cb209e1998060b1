import QtQuick
import Varnholt

TableRow {
    id: row

    required property string taskId
    required property string title
    required property string icon
    required property string line
    required property string nextText
    required property string lastText
    required property string outcome
    required property string outcomeTitle
    required property bool isEnabled
    required property bool isRunning
    required property bool isFlow
    property string progressText
    property bool wide: true

    signal switched(bool on)

    name: [title, line, isRunning ? Tr.t("schedules.running") : nextText, outcomeTitle].filter(part => part !== "").join(", ")
    Accessible.checkable: true
    Accessible.checked: isEnabled

    Icon {
        anchors.verticalCenter: parent.verticalCenter
        name: row.icon
        color: row.isEnabled ? Theme.text : Theme.third
    }
    Column {
        anchors.left: parent.left
        anchors.leftMargin: ScheduleColumns.icon
        anchors.right: figures.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            text: row.title
            color: row.isEnabled ? Theme.text : Theme.second
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: row.isRunning && row.progressText !== "" ? row.progressText : row.line
            font: Theme.label
            color: row.isRunning ? Theme.accent : Theme.second
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
    Row {
        id: figures
        anchors.right: parent.right
        height: parent.height

        Item {
            width: row.wide ? ScheduleColumns.last : ScheduleColumns.lastNarrow
            height: parent.height

            Icon {
                id: shape
                anchors.verticalCenter: parent.verticalCenter
                visible: row.outcome !== ""
                size: Theme.space12
                name: visible ? Theme.outcomeIcon(row.outcome) : ""
                color: Theme.outcomeColor(row.outcome)
            }
            Label {
                anchors.left: shape.right
                anchors.leftMargin: Theme.space8
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: row.wide
                text: row.outcome === "" ? Tr.t("schedules.last.never")
                    : Tr.t("schedules.last", {outcome: row.outcomeTitle, day: row.lastText})
                color: Theme.second
                Accessible.ignored: true
            }
        }
        Item {
            width: ScheduleColumns.next
            height: parent.height

            Label {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                visible: !row.isRunning
                text: row.nextText
                color: row.isEnabled ? Theme.text : Theme.second
                horizontalAlignment: Text.AlignRight
                Accessible.ignored: true
            }
            Badge {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: row.isRunning
                running: true
                text: Tr.t("schedules.running")
            }
        }
        Item {
            width: ScheduleColumns.on
            height: parent.height

            Switch {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                // The row is worked from the list; space turns it on and off.
                focusPolicy: Qt.NoFocus
                name: Tr.t("schedules.enabled", {title: row.title})
                checked: row.isEnabled
                onClicked: {
                    row.switched(checked);
                    checked = Qt.binding(() => row.isEnabled);
                }
            }
        }
    }
}

import QtQuick
import Varnholt

TableRow {
    id: row

    required property string runId
    required property string toolID
    required property string toolName
    required property string outcome
    required property string outcomeTitle
    required property string triggerTitle
    required property string summary
    required property string timeText
    required property string durationText
    required property string filesText
    required property string bytesText
    property bool wide: true

    name: [toolName, outcomeTitle, summary, timeText].join(", ")

    component Figure: Label {
        height: row.height
        color: Theme.second
        horizontalAlignment: Text.AlignRight
        Accessible.ignored: true
    }

    Icon {
        id: shape
        anchors.verticalCenter: parent.verticalCenter
        name: Theme.outcomeIcon(row.outcome)
        color: Theme.outcomeColor(row.outcome)
    }
    Column {
        anchors.left: parent.left
        anchors.leftMargin: ActivityColumns.icon
        anchors.right: figures.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            text: row.toolName
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: row.summary
            font: Theme.label
            color: Theme.second
            Accessible.ignored: true
        }
    }
    Row {
        id: figures
        anchors.right: parent.right

        Label {
            visible: row.wide
            width: ActivityColumns.trigger
            height: row.height
            text: row.triggerTitle
            color: Theme.second
            Accessible.ignored: true
        }
        Figure {
            visible: row.wide
            width: ActivityColumns.files
            text: row.filesText
        }
        Figure {
            visible: row.wide
            width: ActivityColumns.size
            text: row.bytesText
        }
        Figure {
            visible: row.wide
            width: ActivityColumns.duration
            text: row.durationText
        }
        Figure {
            width: ActivityColumns.time
            text: row.timeText
            color: Theme.text
        }
    }
}

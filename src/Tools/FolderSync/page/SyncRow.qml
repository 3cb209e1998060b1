import QtQuick
import Varnholt

// A pair in the list: what goes where, and how it is.
TableRow {
    id: row

    required property string pairId
    required property string title
    required property string ownName
    required property string sourceName
    required property string destinationName
    required property string outcome
    required property string stateText
    required property bool isRunning

    implicitHeight: words.implicitHeight + 2 * Theme.space8 + 2
    name: title + ", " + stateText

    Column {
        id: words
        width: parent.width
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        Label {
            width: parent.width
            visible: row.ownName !== ""
            text: row.ownName
            font: Theme.medium
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        SyncPicture {
            width: parent.width
            sourceName: row.sourceName
            destinationName: row.destinationName
            font: row.ownName === "" ? Theme.medium : Theme.label
            color: row.ownName === "" ? Theme.text : Theme.second
        }
        Row {
            width: parent.width
            spacing: Theme.space4

            Icon {
                id: shape
                anchors.verticalCenter: parent.verticalCenter
                size: Theme.space12
                name: row.isRunning ? "arrow.triangle.2.circlepath" : Theme.outcomeIcon(row.outcome)
                color: row.isRunning ? Theme.accent : Theme.outcomeColor(row.outcome)
            }
            Label {
                width: parent.width - shape.width - parent.spacing
                text: row.stateText
                font: Theme.label
                color: row.isRunning ? Theme.accent : Theme.second
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
        }
    }
}

import QtQuick
import Varnholt

// One file of a report on one place, with its checksum.
TableRow {
    id: row

    required property string fileName
    required property string place
    required property string sizeText
    required property string outcome
    required property string stateTitle
    required property string checksum

    name: [fileName, place, sizeText, stateTitle, checksum].filter(text => text !== "").join(", ")

    Icon {
        id: shape
        anchors.verticalCenter: parent.verticalCenter
        size: Theme.space12
        name: Theme.outcomeIcon(row.outcome)
        color: Theme.outcomeColor(row.outcome)
    }
    Column {
        anchors.left: shape.right
        anchors.leftMargin: Theme.space12
        anchors.right: state.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            text: row.fileName
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: row.checksum === "" ? row.place : row.place + " · " + row.checksum
            font: Theme.label
            color: Theme.second
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
    Label {
        id: state
        anchors.right: size.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        text: row.stateTitle
        color: Theme.second
        Accessible.ignored: true
    }
    Label {
        id: size
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.sizeWidth
        horizontalAlignment: Text.AlignRight
        text: row.sizeText
        Accessible.ignored: true
    }
}

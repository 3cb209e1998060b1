import QtQuick
import Varnholt

// One end of a pair: its picture, its name and where it lies.
Item {
    id: folder

    property string role
    property string path
    property bool isTarget: false
    // Where its words end.
    readonly property real reach: words.x + Math.max(name.contentWidth, place.contentWidth)

    implicitHeight: Theme.fieldHeight + Theme.space8
    Accessible.role: Accessible.StaticText
    Accessible.name: role + ": " + path

    Rectangle {
        id: plate
        // Where there is little room the name matters more.
        visible: folder.width > Theme.fieldWidthShort + Theme.space24
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.fieldHeight + Theme.space4
        height: width
        radius: Theme.radiusButton
        color: folder.isTarget ? Theme.soft : Theme.sunken

        Icon {
            anchors.centerIn: parent
            name: "folder"
            color: folder.isTarget ? Theme.accent : Theme.text
        }
    }
    Column {
        id: words
        anchors.left: plate.visible ? plate.right : parent.left
        anchors.leftMargin: plate.visible ? Theme.space8 + 2 : 0
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter

        Label {
            id: name
            width: parent.width
            text: folder.path.slice(folder.path.lastIndexOf("/") + 1)
            font: Theme.strong
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            id: place
            width: parent.width
            text: folder.path
            font: Theme.label
            color: Theme.second
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
}

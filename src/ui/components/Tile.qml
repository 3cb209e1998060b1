import QtQuick
import QtQuick.Templates as T
import Varnholt

// A tool as a tile: icon, name and one line of what it has to say.
T.AbstractButton {
    id: tile

    property string iconName
    property string line
    property bool available: true

    implicitHeight: Theme.tileHeight
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: text
    Accessible.description: line
    Keys.onReturnPressed: tile.clicked()
    Keys.onEnterPressed: tile.clicked()

    background: Rectangle {
        radius: Theme.radiusCard
        color: tile.down || tile.hovered ? Theme.hover : Theme.surface
        border.width: Theme.hairline
        border.color: Theme.line

        FocusRing {
            shown: tile.visualFocus
            radius: Theme.radiusCard + 3
        }
    }

    contentItem: Item {
        Rectangle {
            id: plate
            x: Theme.space16 - 2
            y: Theme.space16 - 2
            width: Theme.fieldHeight
            height: width
            radius: Theme.radiusButton
            color: tile.available ? Theme.soft : Theme.sunken

            Icon {
                anchors.centerIn: parent
                name: tile.iconName
                color: tile.available ? Theme.accent : Theme.third
            }
        }
        Label {
            anchors.left: plate.right
            anchors.leftMargin: Theme.space8 + 2
            anchors.right: parent.right
            anchors.rightMargin: Theme.space12
            anchors.verticalCenter: plate.verticalCenter
            text: tile.text
            font: Theme.strong
            wrapMode: Text.Wrap
            maximumLineCount: 2
            color: tile.available ? Theme.text : Theme.second
            Accessible.ignored: true
        }
        Label {
            anchors.left: plate.left
            anchors.right: parent.right
            anchors.rightMargin: Theme.space12
            anchors.top: plate.bottom
            anchors.topMargin: Theme.space8
            text: tile.line
            font: Theme.label
            color: tile.available ? Theme.second : Theme.third
            wrapMode: Text.Wrap
            maximumLineCount: 3
            Accessible.ignored: true
        }
    }
}

import QtQuick
import QtQuick.Templates as T
import Varnholt

// A button of a picture alone; its name is for who cannot see it.
T.AbstractButton {
    id: control

    property string iconName
    property color ink: enabled ? Theme.text : Theme.third

    implicitWidth: Theme.itemHeight
    implicitHeight: Theme.itemHeight
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: text
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    background: Rectangle {
        radius: Theme.radiusField
        color: control.down ? Theme.line : control.hovered && control.enabled ? Theme.sunken : "transparent"

        FocusRing {
            shown: control.visualFocus
            gap: -Theme.ring
            radius: parent.radius
        }
    }
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: control.iconName
            color: control.ink
        }
    }
}

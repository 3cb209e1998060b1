import QtQuick
import QtQuick.Templates as T
import Varnholt

// On or off, at once. What it stands for is its name.
T.Switch {
    id: control

    property string name: text

    implicitWidth: indicator.width
    implicitHeight: indicator.height
    focusPolicy: Qt.StrongFocus
    Accessible.name: name

    indicator: Rectangle {
        implicitWidth: 2 * Theme.iconSize
        implicitHeight: Theme.iconSize + 2
        radius: height / 2
        color: control.checked ? Theme.accent : Theme.sunken
        border.width: control.checked ? 0 : Theme.hairline
        border.color: Theme.control
        opacity: control.enabled ? 1 : 0.5

        Rectangle {
            x: control.checked ? parent.width - width - 3 : 3
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.space12
            height: width
            radius: width / 2
            color: control.checked ? Theme.accentInk : Theme.control

            Behavior on x { NumberAnimation { duration: Theme.motion } }
        }
        FocusRing {
            shown: control.visualFocus
            radius: parent.radius + 3
        }
    }
}

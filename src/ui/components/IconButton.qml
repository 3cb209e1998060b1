import QtQuick
import QtQuick.Templates as T
import Varnholt

// A button of a picture alone; its name is read to who cannot see it and shown to who points at it.
T.AbstractButton {
    id: control

    property string iconName
    // The keys that do the same, such as "Ctrl+N"; they work while the button does.
    property string shortcut
    property color ink: enabled ? Theme.text : Theme.disabled

    implicitWidth: Theme.itemHeight
    implicitHeight: Theme.itemHeight
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: text
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    Shortcut {
        enabled: control.shortcut !== "" && control.enabled && control.visible
        sequence: control.shortcut
        onActivated: control.clicked()
    }
    Tooltip {
        wanted: control.hovered && !control.down || control.visualFocus
        text: control.text
        shortcut: control.shortcut
    }

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

import QtQuick
import Varnholt

// The box of a check box or of a row: "all", "some" or "none".
Rectangle {
    id: box

    state: "none"
    implicitWidth: Theme.iconSize
    implicitHeight: Theme.iconSize
    radius: Theme.radiusSmall
    color: state === "none" ? Theme.surface : Theme.accent
    border.width: state === "none" ? Theme.hairline : 0
    border.color: Theme.control

    Icon {
        anchors.centerIn: parent
        visible: box.state !== "none"
        size: Theme.space12
        name: box.state === "some" ? "minus" : "checkmark"
        color: Theme.accentInk
    }
}

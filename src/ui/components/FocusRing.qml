import QtQuick
import Varnholt

// The ring around what the keyboard acts on; put it inside the item it surrounds.
Rectangle {
    property bool shown: false
    property int gap: 1

    anchors.fill: parent
    anchors.margins: -gap - border.width
    color: "transparent"
    visible: shown
    border.width: Theme.ring
    border.color: Theme.accent
    radius: Theme.radiusButton + gap + border.width
    z: 1
}

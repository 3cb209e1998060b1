import QtQuick
import Varnholt

// What floats: a bordered surface over a soft shadow, drawn so that every renderer can.
Rectangle {
    color: Theme.surface
    radius: Theme.radiusCard
    border.width: Theme.hairline
    border.color: Theme.line

    Repeater {
        model: 4

        Rectangle {
            required property int index

            z: -1
            anchors.fill: parent
            anchors.margins: -2 * (index + 1)
            anchors.topMargin: -index
            anchors.bottomMargin: -3 * (index + 1)
            radius: Theme.radiusCard + 2 * index
            color: Theme.shadow
        }
    }
}

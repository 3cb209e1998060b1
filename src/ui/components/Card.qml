import QtQuick
import Varnholt

Rectangle {
    id: card

    default property alias content: inside.data
    property int padding: Theme.space16

    color: Theme.surface
    radius: Theme.radiusCard
    border.width: Theme.hairline
    border.color: Theme.line

    Item {
        id: inside
        anchors.fill: parent
        anchors.margins: card.padding
    }
}

import QtQuick
import Varnholt

// The places that are copied to, each with its room, and the way to add one.
Item {
    id: places

    required property var copying
    readonly property int count: copying.destinations.length

    signal placeWanted

    // Where a place is drawn; with none, where the first would be.
    function boxAt(index: int): rect {
        const top = head.height;
        return count === 0 ? Qt.rect(0, top, width, zone.height)
            : Qt.rect(0, top + index * (Theme.tileHeight - Theme.space16 + Theme.space8), width, Theme.tileHeight - Theme.space16);
    }

    implicitHeight: column.y + column.height

    Item {
        id: head
        width: parent.width
        height: Theme.space24

        Label {
            text: Tr.t("copy-page.to")
            font: Theme.strong
            Accessible.role: Accessible.Heading
        }
    }
    Column {
        id: column
        anchors.top: head.bottom
        width: parent.width
        spacing: Theme.space8

        DropZone {
            id: zone
            width: parent.width
            visible: places.count === 0
            text: Tr.t("copy-page.drop-places")
            onDropped: paths => places.copying.addDestinations(paths)
        }
        Repeater {
            model: places.count

            CopyDestination {
                required property int index

                width: column.width
                height: Theme.tileHeight - Theme.space16
                place: places.copying.destinations[index] ?? ({})
                onTakenOut: places.copying.removeDestination(index)
                onDropped: paths => places.copying.addDestinations(paths)
            }
        }
        Button {
            kind: "quiet"
            iconName: "plus"
            text: Tr.t("copy-page.add-place")
            onClicked: places.placeWanted()
        }
    }
}

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
        const box = index < boxes.count ? boxes.itemAt(index) : null;
        return box ? Qt.rect(0, column.y + box.y, width, box.height) : Qt.rect(0, column.y, width, zone.height);
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
            id: boxes
            model: places.count

            CopyDestination {
                required property int index

                width: column.width
                place: places.copying.destinations[index] ?? ({})
                onTakenOut: places.copying.removeDestination(index)
                onMakingWanted: places.copying.makeDestination(index)
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

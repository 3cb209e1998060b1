import QtQuick
import Varnholt

// The picture of what is chosen: sources at the left, a line from them to each place at the right.
Item {
    id: choice

    required property var copying
    readonly property int gap: Theme.space32 + Theme.space24
    readonly property real leftWidth: Math.round((width - gap) * 0.45)
    readonly property real rightX: leftWidth + gap
    readonly property bool isReady: copying.sources.length > 0

    signal filesWanted
    signal folderWanted
    signal diskWanted(Item button)
    signal placeWanted

    implicitHeight: Math.max(from.y + from.height, to.y + to.height)

    CopySources {
        id: from
        width: choice.leftWidth
        copying: choice.copying
        onFilesWanted: choice.filesWanted()
        onFolderWanted: choice.folderWanted()
        onDiskWanted: button => choice.diskWanted(button)
    }
    Repeater {
        model: Math.max(1, choice.copying.destinations.length)

        CopyLine {
            required property int index
            readonly property rect place: to.boxAt(index)

            x: choice.leftWidth
            width: choice.gap
            height: choice.height
            startY: from.portY
            endY: place.y + place.height / 2
            flows: choice.isReady && choice.copying.destinations.length > 0
            dashed: choice.copying.destinations.length === 0
        }
    }
    CopyDestinations {
        id: to
        x: choice.rightX
        width: choice.width - x
        copying: choice.copying
        onPlaceWanted: choice.placeWanted()
    }
}

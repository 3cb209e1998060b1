import QtQuick
import Varnholt

// Which folder goes into which, on one line; the longer name gives way first.
Item {
    id: picture

    property string sourceName
    property string destinationName
    property font font: Theme.medium
    property color color: Theme.text

    // Where the folders above do not fit, the names alone stand.
    readonly property bool fits: metrics.advanceWidth(sourceName) + metrics.advanceWidth(destinationName) + 2 <= room
    readonly property real room: width - 3 * Theme.space12 - 4 * Theme.space4 - Theme.space8

    implicitHeight: source.implicitHeight

    function shown(name: string): string {
        return fits ? name : name.slice(name.lastIndexOf("/") + 1);
    }

    FontMetrics {
        id: metrics
        font: picture.font
    }
    Row {
        height: parent.height
        spacing: Theme.space4

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.space12
            name: "folder"
            color: Theme.second
        }
        Item {
            width: source.contentWidth + Theme.space4
            height: parent.height

            Label {
                id: source
                width: Math.min(implicitWidth, Math.max(picture.room / 2, picture.room - destination.implicitWidth))
                text: picture.shown(picture.sourceName)
                font: picture.font
                color: picture.color
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
        }
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.space12
            name: "arrow.right"
            color: Theme.accent
        }
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.space12
            name: "folder"
            color: Theme.second
        }
        Label {
            id: destination
            width: Math.min(implicitWidth, Math.max(picture.room / 2, picture.room - source.implicitWidth))
            text: picture.shown(picture.destinationName)
            font: picture.font
            color: picture.color
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
}

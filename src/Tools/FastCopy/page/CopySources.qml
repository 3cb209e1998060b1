import QtQuick
import Varnholt

// What is to be copied, and the ways to add to it.
Item {
    id: sources

    required property var copying
    readonly property int count: copying.sources.length
    // From where the lines start.
    readonly property real portY: content.y + (count > 0 ? Math.min(table.height, Theme.rowHeightTwo + 2 * Theme.space4) : zone.height) / 2

    signal filesWanted
    signal folderWanted
    signal diskWanted(Item button)

    implicitHeight: content.y + content.height + Theme.space8 + ways.height

    Item {
        id: head
        width: parent.width
        height: Theme.space24

        Label {
            id: heading
            text: Tr.t("copy-page.from")
            font: Theme.strong
            Accessible.role: Accessible.Heading
        }
        Label {
            anchors.left: heading.right
            anchors.leftMargin: Theme.space12
            anchors.right: parent.right
            anchors.baseline: heading.baseline
            horizontalAlignment: Text.AlignRight
            text: sources.copying.planText
            color: Theme.second
        }
    }
    Item {
        id: content
        anchors.top: head.bottom
        width: parent.width
        height: sources.count > 0 ? table.height : zone.height

        DropZone {
            id: zone
            width: parent.width
            visible: sources.count === 0
            text: Tr.t("copy-page.drop-sources")
            onDropped: paths => sources.copying.addSources(paths)
        }
        ListTable {
            id: table
            width: parent.width
            height: Math.min(6 * Theme.rowHeightTwo, list.contentHeight) + 2 * Theme.space4 + 2
            visible: sources.count > 0
            border.color: more.containsDrag ? Theme.accent : Theme.line
            name: Tr.t("copy-page.from")
            model: sources.copying.sources
            delegate: CopySourceRow { onTakenOut: sources.copying.removeSource(index) }
            Keys.onDeletePressed: if (currentIndex >= 0) sources.copying.removeSource(currentIndex)

            DropArea {
                id: more
                anchors.fill: parent
                keys: ["text/uri-list"]
                onDropped: drop => sources.copying.addSources(drop.urls.map(url => App.localPath(url)))
            }
        }
    }
    Flow {
        id: ways
        anchors.top: content.bottom
        anchors.topMargin: Theme.space8
        width: parent.width
        spacing: Theme.space4

        Button {
            kind: "quiet"
            iconName: "plus"
            text: Tr.t("copy-page.add-folder")
            Accessible.name: Tr.t("copy-page.add-folder.name")
            onClicked: sources.folderWanted()
        }
        Button {
            kind: "quiet"
            iconName: "plus"
            text: Tr.t("copy-page.add-files")
            Accessible.name: Tr.t("copy-page.add-files.name")
            onClicked: sources.filesWanted()
        }
        Button {
            id: diskButton
            kind: "quiet"
            iconName: "plus"
            text: Tr.t("copy-page.add-disk")
            Accessible.name: Tr.t("copy-page.add-disk.name")
            onClicked: sources.diskWanted(diskButton)
        }
    }
}

import QtQuick
import Varnholt

// What acts on the canvas: adding, the way back, and how near one stands.
Item {
    id: tools

    required property var board
    readonly property var editor: board.editor
    // Beside each other where there is room, else one over the other.
    readonly property bool stacked: making.width + view.width + Theme.space8 > width && making.visible

    height: stacked ? 2 * Theme.rowHeight + Theme.space8 : Theme.rowHeight

    FloatingSurface {
        id: making
        anchors.bottom: parent.bottom
        width: doing.width + 2 * Theme.space4
        height: Theme.rowHeight
        radius: Theme.radiusButton
        visible: !tools.editor.readOnly

        Row {
            id: doing
            x: Theme.space4
            anchors.verticalCenter: parent.verticalCenter

            Button {
                id: add
                height: Theme.itemHeight
                kind: "quiet"
                iconName: "plus"
                text: Tr.t("nodes-page.add")
                onClicked: tools.board.add()

                // The canvas has this key.
                Tooltip {
                    wanted: add.hovered && !add.down || add.visualFocus
                    text: add.text
                    shortcut: "N"
                }
            }
            IconButton {
                iconName: "arrow.uturn.backward"
                text: Tr.t("nodes-page.undo")
                shortcut: "Ctrl+Z"
                enabled: tools.editor.canUndo
                onClicked: tools.editor.undo()
            }
            IconButton {
                iconName: "arrow.uturn.forward"
                text: Tr.t("nodes-page.redo")
                shortcut: "Ctrl+Shift+Z"
                enabled: tools.editor.canRedo
                onClicked: tools.editor.redo()
            }
        }
    }
    FloatingSurface {
        id: view
        x: tools.stacked ? 0 : tools.width - width
        width: seeing.width + 2 * Theme.space4
        height: Theme.rowHeight
        radius: Theme.radiusButton

        Row {
            id: seeing
            x: Theme.space4
            anchors.verticalCenter: parent.verticalCenter

            IconButton {
                iconName: "minus"
                text: Tr.t("nodes-page.zoom-out")
                shortcut: "Ctrl+-"
                enabled: tools.board.zoom > tools.board.leastZoom
                onClicked: tools.board.zoomBy(0.8)
            }
            IconButton {
                iconName: "plus"
                text: Tr.t("nodes-page.zoom-in")
                shortcut: "Ctrl++"
                enabled: tools.board.zoom < tools.board.mostZoom
                onClicked: tools.board.zoomBy(1.25)
            }
            IconButton {
                iconName: "arrow.up.left.and.arrow.down.right"
                text: Tr.t("nodes-page.zoom-fit")
                shortcut: "Ctrl+0"
                onClicked: tools.board.fit(tools.board.leastZoom)
            }
        }
    }
}

import QtQuick
import QtQuick.Templates as T
import Varnholt

// What is to be said of the selected node or edge, or of the whole flow; below, how the last runs went.
Card {
    id: pane

    required property var editor
    readonly property var node: editor.node
    readonly property bool isNode: editor.selectedNode !== ""
    readonly property bool isEdge: editor.selectedEdge !== ""

    signal leave

    function focusFirst() {
        const first = flick.nextItemInFocusChain(true);
        first.forceActiveFocus(Qt.TabFocusReason);
    }

    Accessible.role: Accessible.Pane
    Accessible.name: node.title ?? editor.name

    Flickable {
        id: flick
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: runs.top
        anchors.margins: -Theme.space8
        anchors.bottomMargin: Theme.space12
        clip: true
        contentHeight: column.height + 2 * Theme.space8
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollBar { quiet: true }

        function reveal(item: Item) {
            for (let up = item; up; up = up.parent)
                if (up === column) {
                    const top = item.mapToItem(column, 0, 0).y;
                    contentY = Math.max(0, Math.min(top, Math.max(contentY, top + item.height + 2 * Theme.space16 - height)));
                    return;
                }
        }

        Connections {
            target: pane.Window.window
            function onActiveFocusItemChanged() { flick.reveal(pane.Window.activeFocusItem); }
        }

        Column {
            id: column
            x: Theme.space8
            y: Theme.space8
            width: flick.width - 2 * Theme.space8
            spacing: Theme.space12
            Keys.onEscapePressed: pane.leave()

            Loader {
                width: parent.width
                sourceComponent: pane.isNode ? nodeFacts : pane.isEdge ? edgeFacts : flowFacts
            }
        }
    }
    Component {
        id: nodeFacts
        NodosNodeFacts { editor: pane.editor }
    }
    Component {
        id: edgeFacts
        NodosEdgeFacts { editor: pane.editor }
    }
    Component {
        id: flowFacts
        NodosFlowFacts { editor: pane.editor }
    }
    NodosRuns {
        id: runs
        anchors.bottom: parent.bottom
        width: parent.width
        height: Math.min(implicitHeight, parent.height / 3)
        editor: pane.editor
    }
}

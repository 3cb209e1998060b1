import QtQuick
import Varnholt

// The canvas of a flow, and beside it what is to be said of the node that is selected, or of the whole.
FocusScope {
    id: pane

    required property var editor
    // As it was left the last time; before that, folded away where the canvas needs the room.
    readonly property bool folded: editor.inspectorStanding === "" ? width < 2.5 * Theme.inspectorWidth
        : editor.inspectorStanding === "folded"

    signal leave

    function fold(away: bool) {
        if (away === folded)
            return;
        editor.inspectorStanding = away ? "folded" : "unfolded";
        if (away)
            canvas.focusSelected();
    }

    function inspect() {
        fold(false);
        inspector.focusFirst();
    }

    function clear() { canvas.clear(); }

    Keys.onPressed: event => {
        const ctrl = (event.modifiers & Qt.ControlModifier) !== 0;
        if (ctrl && event.key === Qt.Key_Y)
            editor.redo();
        else if (ctrl && event.key === Qt.Key_S)
            editor.save();
        else
            return;
        event.accepted = true;
    }

    ErrorNote {
        id: trouble
        width: parent.width
        height: visible ? implicitHeight : 0
        visible: pane.editor.trouble !== ""
        title: pane.editor.trouble === "gone" ? Tr.t("nodes-page.gone") : Tr.t("nodes-page.conflict")
        text: pane.editor.trouble === "gone" ? Tr.t("nodes-page.gone.text") : Tr.t("nodes-page.conflict.text")
        actionText: Tr.t("nodes-page.keep-mine")
        onAction: pane.editor.keepMine()
    }
    Button {
        id: theirs
        anchors.top: trouble.bottom
        anchors.topMargin: visible ? Theme.space8 : 0
        anchors.right: parent.right
        visible: pane.editor.trouble === "conflict"
        height: visible ? implicitHeight : 0
        text: Tr.t("nodes-page.take-theirs")
        onClicked: pane.editor.takeTheirs()
    }

    NodosCanvas {
        id: canvas
        anchors.top: theirs.bottom
        anchors.topMargin: trouble.visible ? Theme.space16 : 0
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: pane.folded ? parent.right : inspector.left
        anchors.rightMargin: pane.folded ? 0 : Theme.space16
        focus: true
        editor: pane.editor
        inspected: !pane.folded
        onLeave: pane.leave()
        onInspect: pane.inspect()
        onFoldingWanted: pane.fold(!pane.folded)
    }
    NodosInspector {
        id: inspector
        anchors.top: canvas.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        width: Theme.inspectorWidth
        visible: !pane.folded
        editor: pane.editor
        onLeave: canvas.focusSelected()
    }
}

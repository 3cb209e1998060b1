import QtQuick
import QtQuick.Shapes
import Varnholt

// Nodes and edges on a ground that is dragged and zoomed. One tab stop: arrow keys go from node to node, with Alt or
// Ctrl they move the node; N adds, C connects, E goes to the edges, space turns an edge's condition.
FocusScope {
    id: canvas

    required property var editor
    // What is to be said of the selection stands beside the canvas.
    property bool inspected: true
    property real zoom: 1
    property real panX: 0
    property real panY: 0
    property string hovered
    property point pointer
    property bool drawing: false
    // Has the keyboard because the flow was opened, not because somebody went there.
    property bool fresh: true
    readonly property rect seen: Qt.rect(-panX / zoom, -panY / zoom, width / zoom, height / zoom)
    readonly property real leastZoom: 0.2
    readonly property real mostZoom: 2
    readonly property real readableZoom: 0.6

    signal leave
    signal inspect
    signal foldingWanted

    function clear() {
        editor.select("");
        forceActiveFocus();
    }

    function focusSelected() {
        forceActiveFocus(Qt.TabFocusReason);
    }

    function world(x: real, y: real): point {
        return Qt.point((x - panX) / zoom, (y - panY) / zoom);
    }

    function zoomAt(factor: real, x: real, y: real) {
        moved.wanted = Math.max(leastZoom, Math.min(mostZoom, moved.wanted * factor));
        const next = twentieth(moved.wanted);
        panX = Math.round(x - (x - panX) * next / zoom);
        panY = Math.round(y - (y - panY) * next / zoom);
        zoom = next;
    }

    // Nodes fall on whole pixels at every such zoom.
    function twentieth(value: real): real { return Math.round(value * 20) / 20; }

    function zoomBy(factor: real) {
        moved.touched = true;
        moved.wanted = zoom;
        zoomAt(factor, width / 2, height / 2);
    }

    // The whole flow in the middle, or its beginning where that would be smaller than `least`; never larger than life.
    function fit(least: real) {
        const all = editor.bounds;
        const room = Theme.space32;
        const top = Theme.rowHeightTwo;
        if (all.width <= 0 || width <= 0 || height <= 0)
            return;
        const most = Math.min(1, (width - 2 * room) / all.width, (height - 2 * top - room) / all.height);
        zoom = Math.max(least, Math.floor(most * 20) / 20);
        moved.wanted = zoom;
        panX = Math.round(Math.max(room, (width - all.width * zoom) / 2) - all.x * zoom);
        panY = Math.round(Math.max(top + room, (height - all.height * zoom) / 2) - all.y * zoom);
    }

    // Brings a part of the canvas into view, and keeps it there when the window changes.
    function reveal(x: real, y: real, w: real, h: real) {
        const room = Theme.space24;
        const before = Qt.point(panX, panY);
        panX = Math.round(Math.min(Math.max(panX, room - x * zoom), width - room - (x + w) * zoom));
        panY = Math.round(Math.min(Math.max(panY, room + Theme.rowHeightTwo - y * zoom), height - room - Theme.rowHeightTwo - (y + h) * zoom));
        moved.touched = moved.touched || panX !== before.x || panY !== before.y;
    }

    function add() { menu.open(); }

    function addAt(kind: string, at: var) {
        at ? editor.addAt(kind, at.x, at.y) : editor.addNext(kind);
        forceActiveFocus(Qt.TabFocusReason);
    }

    function nodeActs(): var {
        const isStart = editor.node.isStart;
        return [
            {text: Tr.t("nodes-page.act.fill"), icon: "list.bullet", shortcut: "Return", act: () => inspect()},
            {text: Tr.t("nodes-page.act.next"), icon: "plus", shortcut: "N", enabled: !editor.readOnly, act: () => add()},
            {text: Tr.t("nodes-page.act.connect"), icon: "arrow.right", shortcut: "C", enabled: !editor.readOnly,
                act: () => editor.beginConnect(editor.selectedNode)},
            {text: Tr.t("nodes-page.duplicate"), icon: "doc.on.doc.fill", shortcut: "Ctrl+D", enabled: !editor.readOnly && !isStart,
                act: () => editor.duplicateSelected()},
            {text: Tr.t("nodes-page.remove"), icon: "trash", shortcut: "Del", enabled: !editor.readOnly,
                act: () => editor.removeSelected()}
        ];
    }

    function edgeActs(): var {
        const id = editor.selectedEdge;
        return editor.conditionOptions.map(each => ({text: each.title, icon: editor.edge.condition === each.value ? "checkmark" : "",
            enabled: !editor.readOnly, act: () => editor.setCondition(id, each.value)}))
            .concat({text: Tr.t("nodes-page.cut.do"), icon: "trash", shortcut: "Del", enabled: !editor.readOnly,
                act: () => editor.removeSelected()});
    }

    // What can be done with the selection, or here on the empty ground.
    function offerActs(item: Item, x: real, y: real) {
        acts.active = true;
        const at = item.mapToItem(canvas, x, y);
        acts.item.offer(editor.selectedNode !== "" ? nodeActs() : editor.selectedEdge !== "" ? edgeActs() : [
            {text: Tr.t("nodes-page.act.here"), icon: "plus", enabled: !editor.readOnly, act: () => menu.openAt(world(at.x, at.y), at.x, at.y)},
            {text: Tr.t("nodes-page.zoom-fit"), icon: "arrow.up.left.and.arrow.down.right", shortcut: "Ctrl+0", act: () => fit(leastZoom)}
        ], item, x, y);
    }

    function aimAt(x: real, y: real) {
        pointer = world(x, y);
        drawing = true;
        editor.aim(editor.nodeAt(pointer.x, pointer.y));
    }

    function finishDrawing() {
        drawing = false;
        editor.finishConnect();
        forceActiveFocus();
    }

    onActiveFocusChanged: if (!activeFocus) fresh = false
    activeFocusOnTab: true
    Accessible.role: Accessible.Pane
    Accessible.name: Tr.t("nodes-page.canvas")
    Accessible.description: Tr.t("nodes-page.canvas.keys")
    onWidthChanged: if (!moved.touched) fit(readableZoom)
    onHeightChanged: if (!moved.touched) fit(readableZoom)

    QtObject {
        id: moved
        // The person has chosen what to see.
        property bool touched: false
        // Before it was rounded, so that small turns of a wheel add up.
        property real wanted: 1
    }
    Connections {
        target: canvas.editor
        function onOpened() {
            moved.touched = false;
            canvas.fit(canvas.readableZoom);
        }
    }

    Keys.onPressed: event => {
        const plain = event.modifiers === Qt.NoModifier || event.modifiers === Qt.KeypadModifier || event.modifiers === Qt.ShiftModifier;
        const moving = (event.modifiers & (Qt.AltModifier | Qt.ControlModifier)) !== 0;
        if (App.isMenuKey(event.key, event.modifiers)) {
            offerActs(canvas, width / 2, height / 2);
            event.accepted = true;
            return;
        }
        const ways = {
            [Qt.Key_Left]: ["left", -1, 0], [Qt.Key_Right]: ["right", 1, 0],
            [Qt.Key_Up]: ["up", 0, -1], [Qt.Key_Down]: ["down", 0, 1]
        };
        if (event.key in ways) {
            const way = ways[event.key];
            moving ? editor.nudge(way[1], way[2]) : editor.step(way[0]);
            event.accepted = true;
            return;
        }
        if (moving && event.key === Qt.Key_D) {
            editor.duplicateSelected();
            event.accepted = true;
            return;
        }
        const acts = {
            [Qt.Key_N]: () => add(),
            [Qt.Key_C]: () => editor.beginConnect(editor.selectedNode),
            [Qt.Key_E]: () => editor.stepEdge(),
            [Qt.Key_Space]: () => editor.turnCondition(editor.selectedEdge),
            [Qt.Key_Delete]: () => editor.removeSelected(),
            [Qt.Key_Backspace]: () => editor.removeSelected(),
            [Qt.Key_Return]: () => editor.connectFrom !== "" ? editor.finishConnect() : canvas.inspect(),
            [Qt.Key_Enter]: () => editor.connectFrom !== "" ? editor.finishConnect() : canvas.inspect(),
            [Qt.Key_Plus]: () => zoomBy(1.25),
            [Qt.Key_Equal]: () => zoomBy(1.25),
            [Qt.Key_Minus]: () => zoomBy(0.8),
            [Qt.Key_0]: () => zoomBy(1 / zoom),
            [Qt.Key_F]: () => fit(leastZoom),
            [Qt.Key_I]: () => canvas.foldingWanted()
        };
        event.accepted = plain && event.key in acts;
        if (event.accepted)
            acts[event.key]();
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusCard
        color: Theme.surface
        border.width: Theme.hairline
        border.color: Theme.line
    }
    Item {
        id: clip
        anchors.fill: parent
        anchors.margins: Theme.hairline
        clip: true

        Image {
            readonly property real step: canvas.editor.grid * canvas.zoom * (canvas.zoom < 0.5 ? 4 : 1)
            x: canvas.panX % step - step
            y: canvas.panY % step - step
            width: parent.width + 2 * step
            height: parent.height + 2 * step
            fillMode: Image.Tile
            horizontalAlignment: Image.AlignLeft
            verticalAlignment: Image.AlignTop
            sourceSize: Qt.size(Math.round(step), Math.round(step))
            source: "data:image/svg+xml;utf8,<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 20'><circle cx='10' cy='10' r='0.8' fill-opacity='0.35' fill='%23"
                + Theme.control.toString().slice(-6) + "'/></svg>"
            Accessible.ignored: true
        }
        MouseArea {
            id: ground
            property point from
            property point panned
            property bool dragged: false

            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.LeftButton | Qt.MiddleButton | Qt.RightButton
            cursorShape: pressed && dragged ? Qt.ClosedHandCursor : canvas.hovered !== "" ? Qt.PointingHandCursor : Qt.ArrowCursor
            onPressed: event => {
                from = Qt.point(event.x, event.y);
                panned = Qt.point(canvas.panX, canvas.panY);
                dragged = false;
            }
            onPositionChanged: event => {
                if (!pressed) {
                    const at = canvas.world(event.x, event.y);
                    canvas.hovered = canvas.editor.edgeAt(at.x, at.y, Theme.space8 / canvas.zoom);
                    return;
                }
                dragged = dragged || !(pressedButtons & Qt.RightButton) && Math.abs(event.x - from.x) + Math.abs(event.y - from.y) > Theme.space4;
                if (!dragged)
                    return;
                moved.touched = true;
                canvas.panX = panned.x + event.x - from.x;
                canvas.panY = panned.y + event.y - from.y;
            }
            onReleased: event => {
                // The end of a double click leaves the keyboard to the menu that it opened.
                if (dragged || menu.visible)
                    return;
                if (canvas.editor.connectFrom !== "")
                    canvas.editor.cancelConnect();
                const at = canvas.world(event.x, event.y);
                canvas.editor.select(canvas.editor.edgeAt(at.x, at.y, Theme.space8 / canvas.zoom));
                canvas.forceActiveFocus();
                if (event.button === Qt.RightButton)
                    canvas.offerActs(ground, event.x, event.y);
            }
            onDoubleClicked: event => menu.openAt(canvas.world(event.x, event.y), event.x, event.y)
            onExited: canvas.hovered = ""
            onWheel: event => {
                moved.touched = true;
                if (event.modifiers & Qt.ControlModifier) {
                    canvas.zoomAt(Math.pow(1.0015, event.angleDelta.y), event.x, event.y);
                    return;
                }
                const fine = event.pixelDelta.x !== 0 || event.pixelDelta.y !== 0;
                const delta = fine ? event.pixelDelta : Qt.point(event.angleDelta.x / 2, event.angleDelta.y / 2);
                const across = event.modifiers & Qt.ShiftModifier;
                canvas.panX += across ? delta.y : delta.x;
                canvas.panY += across ? 0 : delta.y;
            }
        }
        PinchHandler {
            property real before: 1
            target: null
            onActiveChanged: {
                before = canvas.zoom;
                moved.wanted = canvas.zoom;
            }
            onActiveScaleChanged: {
                moved.touched = true;
                canvas.zoomAt(before * activeScale / moved.wanted, centroid.position.x, centroid.position.y);
            }
        }

        Item {
            x: canvas.panX
            y: canvas.panY
            scale: canvas.zoom
            transformOrigin: Item.TopLeft

            Repeater {
                model: canvas.editor.edges
                NodosEdge { board: canvas }
            }
            Shape {
                visible: canvas.drawing
                ShapePath {
                    strokeColor: canvas.editor.connectFault === "" ? Theme.accent : Theme.bad
                    strokeWidth: 2
                    fillColor: "transparent"
                    startX: draft.x
                    startY: draft.y
                    PathLine {
                        x: canvas.pointer.x
                        y: canvas.pointer.y
                    }
                }
            }
            Item { id: draft }
            Repeater {
                model: canvas.editor.nodes
                NodosNode {
                    board: canvas
                    onDrawn: (x, y) => {
                        draft.x = x;
                        draft.y = y;
                    }
                }
            }
        }
    }

    EmptyState {
        anchors.centerIn: parent
        width: parent.width - 2 * Theme.space24
        visible: canvas.editor.bounds.width === 0
        iconName: "point.topleft.down.to.point.bottomright"
        text: Tr.t("nodes-page.canvas.empty")
        actionText: Tr.t("nodes-page.add")
        onAction: canvas.add()
    }

    Button {
        x: Theme.space8
        y: Theme.space8
        kind: "quiet"
        iconName: "chevron.left"
        text: Tr.t("nodes-page.back")
        onClicked: canvas.leave()
    }
    NodosTools {
        board: canvas
        anchors.left: parent.left
        anchors.leftMargin: Theme.space12
        anchors.right: parent.right
        anchors.rightMargin: Theme.space12
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.space12
    }
    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8
        y: Theme.space8 + 1
        iconName: canvas.inspected ? "chevron.right" : "info.circle"
        text: canvas.inspected ? Tr.t("nodes-page.inspector.fold") : Tr.t("nodes-page.inspector.unfold")
        onClicked: canvas.foldingWanted()
    }
    // Of a flow that was just made: what comes next.
    Label {
        visible: canvas.editor.isBlank && canvas.editor.connectFrom === ""
        width: Math.min(implicitWidth, canvas.width - 2 * Theme.space24)
        anchors.horizontalCenter: parent.horizontalCenter
        y: canvas.panY + canvas.editor.bounds.bottom * canvas.zoom + Theme.space24
        text: Tr.t("nodes-page.canvas.next")
        color: Theme.second
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        lineHeight: 1.3
    }
    FloatingSurface {
        visible: canvas.editor.connectFrom !== ""
        anchors.horizontalCenter: parent.horizontalCenter
        // Below the way back, which stays to be pressed.
        y: Theme.rowHeightTwo
        width: Math.min(hint.implicitWidth, canvas.width - 4 * Theme.space24) + 2 * Theme.space12
        height: hint.implicitHeight + 2 * Theme.space8
        Accessible.role: Accessible.AlertMessage
        Accessible.name: hint.text

        Label {
            id: hint
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.space12
            wrapMode: Text.Wrap
            text: canvas.editor.connectFault !== "" ? canvas.editor.connectFault : Tr.t("nodes-page.connect.hint")
            color: canvas.editor.connectFault !== "" ? Theme.bad : Theme.text
            Accessible.ignored: true
        }
    }
    NodosAddMenu {
        id: menu
        editor: canvas.editor
        onPicked: (kind, at) => canvas.addAt(kind, at)
        onClosed: canvas.forceActiveFocus(Qt.TabFocusReason)
    }
    Loader {
        id: acts
        active: false
        sourceComponent: ContextMenu {}
    }
    FocusRing {
        shown: canvas.activeFocus && !canvas.fresh && canvas.editor.selectedNode === "" && canvas.editor.selectedEdge === ""
        gap: -Theme.ring
        radius: Theme.radiusCard
    }
}

import QtQuick
import Varnholt

// A node: what it is, what it works on, how it goes. Dragged by its body, joined from its ports.
Item {
    id: node

    required property var board
    required property string nodeId
    required property real nodeX
    required property real nodeY
    required property string title
    required property string detail
    required property string icon
    required property string nodeState
    required property string stateText
    required property string problemText
    required property string planText
    required property string aim
    required property bool selected
    required property string spoken
    readonly property var editor: board.editor
    // The system's glyphs are made for one size.
    readonly property int lettering: board.zoom === 1 ? Text.NativeRendering : Text.QtRendering
    readonly property bool inView: nodeX + width >= board.seen.left && nodeX <= board.seen.right
        && nodeY + height >= board.seen.top && nodeY <= board.seen.bottom

    // An edge begins to be drawn from this point.
    signal drawn(real x, real y)

    function come() {
        board.reveal(nodeX, nodeY, width, height);
        if (board.activeFocus)
            forceActiveFocus(Qt.TabFocusReason);
    }

    x: nodeX
    y: nodeY
    z: selected ? 1 : 0
    width: editor.nodeWidth
    height: editor.nodeHeight
    focus: selected
    onSelectedChanged: if (selected) come()
    onAimChanged: if (aim === "good" || aim === "bad") board.reveal(nodeX, nodeY, width, height)
    Component.onCompleted: if (selected) come()
    Accessible.role: Accessible.Button
    Accessible.name: spoken
    Accessible.focusable: true
    Accessible.focused: selected
    Accessible.onPressAction: editor.select(nodeId)

    component Port: Rectangle {
        id: port
        width: Theme.dot + 4
        height: width
        radius: width / 2
        color: node.aim === "from" ? Theme.accent : Theme.surface
        border.width: 1.5
        border.color: Theme.accent
        visible: !node.editor.readOnly && (node.selected || body.containsMouse || pull.containsMouse || node.aim === "from")

        MouseArea {
            id: pull
            objectName: "port"
            anchors.fill: parent
            anchors.margins: -Theme.space8
            hoverEnabled: true
            preventStealing: true
            cursorShape: Qt.CrossCursor
            onPressed: {
                const at = port.mapToItem(node.parent, port.width / 2, port.height / 2);
                node.drawn(at.x, at.y);
                node.editor.beginConnect(node.nodeId);
            }
            onPositionChanged: event => {
                if (!pressed)
                    return;
                const at = mapToItem(node.board, event.x, event.y);
                node.board.aimAt(at.x, at.y);
            }
            onReleased: node.board.finishDrawing()
            onCanceled: node.board.finishDrawing()
        }
    }

    Loader {
        active: node.inView
        anchors.fill: parent
        sourceComponent: Rectangle {
            radius: Theme.radiusCard - 2
            color: body.containsMouse && !node.selected ? Theme.hover : Theme.surface
            border.width: node.selected || node.aim === "good" || node.aim === "bad" ? 1.5 : Theme.hairline
            border.color: node.aim === "bad" ? Theme.bad : node.selected || node.aim === "good" ? Theme.accent : Theme.line

            Rectangle {
                z: -1
                visible: node.selected || node.aim !== ""
                anchors.fill: parent
                anchors.margins: -3
                radius: parent.radius + 3
                color: node.aim === "bad" ? Theme.badSoft : Theme.soft
            }
            Icon {
                id: picture
                x: Theme.space12 + 2
                y: Theme.space12
                name: node.icon
            }
            Label {
                anchors.left: picture.right
                anchors.leftMargin: Theme.space8
                anchors.right: marks.left
                anchors.rightMargin: Theme.space4
                anchors.verticalCenter: picture.verticalCenter
                text: node.title
                font: Theme.strong
                renderType: node.lettering
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            Label {
                x: picture.x
                y: Theme.space32
                width: parent.width - 2 * x
                text: node.planText !== "" ? node.planText
                    : node.nodeState === "running" || node.nodeState === "failed" ? node.stateText : node.detail
                font: Theme.label
                renderType: node.lettering
                color: node.planText !== "" || node.nodeState === "running" ? Theme.accent
                    : node.nodeState === "failed" ? Theme.bad : Theme.second
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            Row {
                id: marks
                anchors.right: parent.right
                anchors.rightMargin: Theme.space12
                anchors.verticalCenter: picture.verticalCenter
                spacing: Theme.space4

                Icon {
                    visible: node.problemText !== "" && node.nodeState === ""
                    size: Theme.space12 + 2
                    name: "exclamationmark.triangle"
                    color: Theme.warning
                }
                Icon {
                    visible: node.nodeState !== "" && node.nodeState !== "running"
                    size: Theme.space12
                    name: visible ? Theme.outcomeIcon(node.nodeState) : ""
                    color: Theme.outcomeColor(node.nodeState)
                }
                Rectangle {
                    visible: node.nodeState === "running"
                    anchors.verticalCenter: parent.verticalCenter
                    width: Theme.dot
                    height: width
                    radius: width / 2
                    color: Theme.accent

                    SequentialAnimation on opacity {
                        running: node.nodeState === "running" && Theme.motion > 0
                        loops: Animation.Infinite
                        NumberAnimation { to: 0.3; duration: 6 * Theme.motion }
                        NumberAnimation { to: 1; duration: 6 * Theme.motion }
                    }
                }
            }
        }
    }
    MouseArea {
        id: body
        property point grip
        property bool dragged: false

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPressed: event => {
            grip = Qt.point(event.x, event.y);
            dragged = false;
            node.board.forceActiveFocus();
            if (node.editor.connectFrom !== "") {
                node.editor.aim(node.nodeId);
                node.board.finishDrawing();
            } else {
                node.editor.select(node.nodeId);
            }
        }
        onPositionChanged: event => {
            if (!(pressedButtons & Qt.LeftButton) || node.editor.readOnly)
                return;
            dragged = dragged || Math.abs(event.x - grip.x) + Math.abs(event.y - grip.y) > Theme.space4;
            if (dragged)
                node.editor.moveTo(node.nodeId, node.nodeX + event.x - grip.x, node.nodeY + event.y - grip.y);
        }
        onReleased: event => {
            node.editor.endStep();
            if (event.button === Qt.RightButton)
                node.board.offerActs(body, event.x, event.y);
        }
        onDoubleClicked: node.board.inspect()
    }
    Port {
        anchors.horizontalCenter: parent.right
        anchors.verticalCenter: parent.verticalCenter
    }
    Port {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.verticalCenter: parent.bottom
    }
}

import QtQuick
import QtQuick.Shapes
import Varnholt

// An edge: grey goes on always, green after a success, red and dashed after a failure. Its badge says the same with a
// shape, and turns it.
Item {
    id: edge

    required property var board
    required property string edgeId
    required property point start
    required property point bendStart
    required property point bendEnd
    required property point end
    required property point middle
    required property rect frame
    required property string condition
    required property string conditionTitle
    required property bool selected
    required property bool near
    required property bool dim
    required property string spoken
    readonly property color tone: condition === "success" ? Theme.good : condition === "failure" ? Theme.bad : Theme.control
    readonly property bool inView: frame.right >= board.seen.left && frame.left <= board.seen.right
        && frame.bottom >= board.seen.top && frame.top <= board.seen.bottom
    readonly property bool marked: selected || board.hovered === edgeId

    opacity: dim ? 0.4 : 1
    focus: selected
    onSelectedChanged: if (selected && board.activeFocus) forceActiveFocus(Qt.TabFocusReason)
    Accessible.role: Accessible.Button
    Accessible.name: spoken
    Accessible.focusable: true
    Accessible.focused: selected
    Accessible.onPressAction: board.editor.turnCondition(edgeId)

    Loader {
        active: edge.inView
        sourceComponent: Item {
            Shape {
                ShapePath {
                    strokeColor: edge.tone
                    strokeWidth: edge.marked ? 3 : 2
                    strokeStyle: edge.condition === "failure" ? ShapePath.DashLine : ShapePath.SolidLine
                    dashPattern: [3, 2]
                    capStyle: ShapePath.FlatCap
                    fillColor: "transparent"
                    startX: edge.start.x
                    startY: edge.start.y
                    PathCubic {
                        x: edge.end.x
                        y: edge.end.y
                        control1X: edge.bendStart.x
                        control1Y: edge.bendStart.y
                        control2X: edge.bendEnd.x
                        control2Y: edge.bendEnd.y
                    }
                }
            }
            Rectangle {
                visible: edge.condition !== "always" || edge.near || edge.marked
                x: edge.middle.x - width / 2
                y: edge.middle.y - height / 2
                width: Theme.iconSize + 2
                height: width
                radius: width / 2
                color: edge.selected ? edge.tone : Theme.surface
                border.width: Theme.hairline
                border.color: edge.tone

                Icon {
                    anchors.centerIn: parent
                    size: Theme.space8 + 2
                    name: edge.condition === "success" ? "checkmark" : edge.condition === "failure" ? "xmark" : "arrow.right"
                    color: edge.selected ? Theme.surface : edge.condition === "always" ? Theme.second : edge.tone
                }
                FocusRing {
                    shown: edge.activeFocus
                    radius: parent.radius + 3
                }
                MouseArea {
                    anchors.fill: parent
                    anchors.margins: -Theme.space4
                    cursorShape: Qt.PointingHandCursor
                    onClicked: {
                        edge.board.editor.select(edge.edgeId);
                        edge.board.forceActiveFocus();
                        edge.board.editor.turnCondition(edge.edgeId);
                    }
                }
            }
        }
    }
}

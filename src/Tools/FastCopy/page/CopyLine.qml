import QtQuick
import QtQuick.Shapes
import Varnholt

// The line from what is copied to one place, in the accent once something goes along it.
Shape {
    id: line

    property real startY
    property real endY
    property bool flows: false
    property bool dashed: false
    property int strokeWidth: 2

    ShapePath {
        strokeColor: line.flows ? Theme.accent : Theme.control
        strokeWidth: line.strokeWidth
        strokeStyle: line.dashed ? ShapePath.DashLine : ShapePath.SolidLine
        dashPattern: [2, 3]
        capStyle: ShapePath.FlatCap
        fillColor: "transparent"
        startX: 0
        startY: line.startY
        PathCubic {
            x: line.width
            y: line.endY
            control1X: line.width / 2
            control1Y: line.startY
            control2X: line.width / 2
            control2Y: line.endY
        }
    }
}

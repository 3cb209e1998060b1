import QtQuick
import Varnholt

// Parts of a whole in the series' colours: [{title, fraction, sizeText}], in the order of the legend.
Rectangle {
    id: bar

    property var parts: []

    implicitHeight: Theme.barHeightThick
    radius: height / 2
    color: Theme.sunken
    Accessible.role: Accessible.Graphic
    Accessible.name: parts.map(part => part.title + " " + part.sizeText).join(", ")

    // Drawn from the last part to the first, each from the bar's beginning: only the end caps stay round.
    Repeater {
        model: bar.parts.length

        Rectangle {
            required property int index
            readonly property int part: bar.parts.length - 1 - index
            readonly property real end: {
                let sum = 0;
                for (let i = 0; i <= part; ++i)
                    sum += bar.parts[i].fraction;
                return Math.min(1, sum);
            }
            readonly property bool last: end > 0.999

            height: bar.height
            width: Math.round(bar.width * end)
            visible: bar.parts[part].fraction > 0
            radius: bar.radius
            color: Theme.seriesColor(part)

            Rectangle {
                visible: !parent.last && parent.width > parent.radius
                anchors.right: parent.right
                width: parent.radius
                height: parent.height
                color: parent.color
            }
        }
    }
}

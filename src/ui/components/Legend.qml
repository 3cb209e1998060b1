import QtQuick
import Varnholt

// Names the parts of a stacked bar, with their sizes; wraps where it is narrow.
Flow {
    id: legend

    property var parts: []
    // What all entries take on one line.
    readonly property real naturalWidth: parts.reduce((sum, part) => sum + Math.ceil(metrics.advanceWidth(part.title))
        + Math.ceil(metrics.advanceWidth(part.sizeText)) + Theme.dot + 2 * Theme.space8, 0)
        + Math.max(0, parts.length - 1) * Theme.space24

    spacing: Theme.space8

    FontMetrics {
        id: metrics
        font: Theme.body
    }
    Repeater {
        model: legend.parts

        Row {
            id: entry
            required property var modelData
            required property int index

            spacing: Theme.space8
            rightPadding: index < legend.parts.length - 1 ? Theme.space16 : 0

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: Theme.dot
                height: Theme.dot
                radius: Theme.dot / 2
                color: Theme.seriesColor(entry.index)
            }
            Label { text: entry.modelData.title }
            Label {
                text: entry.modelData.sizeText
                color: Theme.second
            }
        }
    }
}

import QtQuick
import Varnholt

// Names the parts of a stacked bar, with their sizes; wraps where it is narrow.
Flow {
    id: legend

    property var parts: []
    // What all entries take on one line.
    readonly property real naturalWidth: parts.reduce((sum, part) => sum + metrics.advanceWidth(part.title)
        + metrics.advanceWidth(part.sizeText) + Theme.dot + 2 * Theme.space8, 0)
        + Math.max(0, parts.length - 1) * Theme.space24 + 2

    spacing: Theme.space8

    // Where not everything fits on one line, the names alone may stand.
    property bool compact: false

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
                visible: !legend.compact
                text: entry.modelData.sizeText
                color: Theme.second
            }
        }
    }
}

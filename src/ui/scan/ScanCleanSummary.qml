import QtQuick
import Varnholt

// How much can go, by category; while it is looked for, how far the search is.
Card {
    id: card

    required property var junk

    implicitHeight: Theme.summaryHeight

    Label {
        id: label
        text: card.junk.isScanning ? Tr.t("cache.scanning") : Tr.t("cache.can-go")
        font: Theme.label
        color: Theme.third
    }
    Label {
        id: total
        anchors.top: label.bottom
        anchors.topMargin: 2
        text: card.junk.totalText
        font: Theme.figure
    }
    Label {
        visible: card.junk.isScanning
        anchors.right: parent.right
        width: parent.width / 2
        y: Theme.space12
        text: card.junk.progressText
        color: Theme.second
        elide: Text.ElideMiddle
        horizontalAlignment: Text.AlignRight
    }
    Legend {
        visible: !card.junk.isScanning
        anchors.right: parent.right
        width: Math.min(naturalWidth, parent.width - total.width - Theme.space32)
        y: Theme.space12
        parts: card.junk.categories
    }
    StackedBar {
        id: stack
        anchors.bottom: parent.bottom
        width: parent.width
        visible: !card.junk.isScanning
        parts: card.junk.categories
    }
    Bar {
        anchors.fill: stack
        visible: card.junk.isScanning
        value: card.junk.progress
        name: Tr.t("cache.scanning")
    }
}

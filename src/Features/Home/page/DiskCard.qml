import QtQuick
import Varnholt

// The disks, each with what is free on it.
Card {
    id: card

    property var disks: []

    implicitHeight: rows.implicitHeight + 2 * padding

    Column {
        id: rows
        width: parent.width
        spacing: Theme.space12

        Repeater {
            model: card.disks

            Column {
                id: disk
                required property var modelData

                width: rows.width
                spacing: Theme.space4 + 1

                TextMetrics {
                    id: whole
                    font: Theme.label
                    text: Tr.t("home.disk.free", {free: disk.modelData.freeText, total: disk.modelData.totalText})
                }
                Item {
                    width: parent.width
                    height: name.implicitHeight

                    Label {
                        id: name
                        width: parent.width - free.implicitWidth - Theme.space12
                        elide: Text.ElideMiddle
                        text: disk.modelData.name
                    }
                    Label {
                        id: free
                        anchors.right: parent.right
                        anchors.baseline: name.baseline
                        // Where there is little room, the figure is shortened before the name.
                        text: whole.width < parent.width - name.implicitWidth - Theme.space12 ? whole.text
                            : Tr.t("home.disk.free.short", {free: disk.modelData.freeText})
                        font: Theme.label
                        color: Theme.second
                    }
                }
                Bar {
                    width: parent.width
                    value: disk.modelData.fraction
                    tone: Theme.toneColor(disk.modelData.tone)
                    name: disk.modelData.name + ", " + whole.text
                }
            }
        }
    }
}

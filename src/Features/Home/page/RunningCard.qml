import QtQuick
import Varnholt

Card {
    id: card

    property var jobs: []

    implicitHeight: rows.implicitHeight + 2 * padding

    Column {
        id: rows
        width: parent.width
        spacing: Theme.space4

        Label {
            text: Tr.t("home.running")
            font: Theme.strong
            height: Theme.space16 + Theme.space4
            Accessible.role: Accessible.Heading
        }
        Label {
            visible: card.jobs.length === 0
            width: parent.width
            height: Theme.rowHeight
            text: Tr.t("home.running.none")
            color: Theme.second
        }
        Repeater {
            model: card.jobs

            Item {
                id: job
                required property var modelData

                width: rows.width
                height: Theme.rowHeight

                Icon {
                    id: shape
                    anchors.verticalCenter: parent.verticalCenter
                    name: job.modelData.icon
                }
                Label {
                    id: title
                    anchors.left: shape.right
                    anchors.leftMargin: Theme.space12
                    anchors.right: parent.right
                    y: Theme.space4
                    text: job.modelData.title
                }
                Bar {
                    anchors.left: title.left
                    anchors.right: parent.right
                    anchors.top: title.bottom
                    anchors.topMargin: Theme.space4
                    value: job.modelData.progress
                    name: job.modelData.title
                }
            }
        }
    }
}

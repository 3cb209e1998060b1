import QtQuick
import Varnholt

Card {
    id: card

    property var runs: []

    signal opened

    implicitHeight: rows.implicitHeight + 2 * padding

    Column {
        id: rows
        width: parent.width
        spacing: Theme.space4

        Label {
            text: Tr.t("home.recent")
            font: Theme.strong
            height: Theme.space16 + Theme.space4
            Accessible.role: Accessible.Heading
        }
        Label {
            visible: card.runs.length === 0
            width: parent.width
            height: Theme.rowHeight
            text: Tr.t("home.recent.none")
            color: Theme.second
        }
        Repeater {
            model: card.runs

            Item {
                id: run
                required property var modelData
                required property int index

                width: rows.width
                height: Theme.rowHeight
                Accessible.role: Accessible.ListItem
                Accessible.name: [modelData.toolName, modelData.summary, modelData.outcomeTitle, modelData.timeText].join(", ")

                Icon {
                    id: shape
                    anchors.verticalCenter: parent.verticalCenter
                    size: Theme.space12
                    name: Theme.outcomeIcon(run.modelData.outcome)
                    color: Theme.outcomeColor(run.modelData.outcome)
                }
                Label {
                    id: tool
                    anchors.left: shape.right
                    anchors.leftMargin: Theme.space8
                    anchors.verticalCenter: parent.verticalCenter
                    width: Math.min(implicitWidth, parent.width / 3)
                    text: run.modelData.toolName
                }
                Label {
                    anchors.left: tool.right
                    anchors.leftMargin: Theme.space12
                    anchors.right: time.left
                    anchors.rightMargin: Theme.space12
                    anchors.verticalCenter: parent.verticalCenter
                    text: run.modelData.summary
                    color: Theme.second
                }
                Label {
                    id: time
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: run.modelData.timeText
                    color: Theme.second
                }
                Rectangle {
                    visible: run.index < card.runs.length - 1
                    anchors.bottom: parent.bottom
                    width: parent.width
                    height: Theme.hairline
                    color: Theme.line
                }
            }
        }
        Button {
            visible: card.runs.length > 0
            x: -Theme.space8
            kind: "quiet"
            text: Tr.t("home.recent.all")
            onClicked: card.opened()
        }
    }
}

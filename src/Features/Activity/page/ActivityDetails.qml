import QtQuick
import Varnholt

// One run: what it was, what it touched, and Undo where that can be.
Card {
    id: card

    required property var activity
    readonly property var run: activity.selectedRun

    Accessible.role: Accessible.Pane
    Accessible.name: run.toolName

    Column {
        id: head
        width: parent.width
        spacing: Theme.space8

        Item {
            width: parent.width
            height: Theme.space24

            Icon {
                id: shape
                anchors.verticalCenter: parent.verticalCenter
                name: card.run.icon
            }
            Label {
                anchors.left: shape.right
                anchors.leftMargin: Theme.space8
                anchors.right: badge.left
                anchors.rightMargin: Theme.space8
                anchors.verticalCenter: parent.verticalCenter
                text: card.run.toolName
                font: Theme.strong
            }
            Badge {
                id: badge
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: card.run.outcomeTitle
                outcome: card.run.outcome
            }
        }
        Label {
            width: parent.width
            text: card.run.summary
            wrapMode: Text.Wrap
            maximumLineCount: 4
        }
        Label {
            width: parent.width
            text: card.run.whenText
            font: Theme.label
            color: Theme.second
            wrapMode: Text.Wrap
        }
        Rectangle {
            width: parent.width
            height: Theme.hairline
            color: Theme.line
        }
        Column {
            width: parent.width

            Repeater {
                model: card.run.facts

                FactRow {
                    required property var modelData

                    width: head.width
                    label: modelData.label
                    value: modelData.value
                }
            }
        }
    }

    Label {
        id: heading
        anchors.top: head.bottom
        anchors.topMargin: Theme.space12
        width: parent.width
        wrapMode: Text.Wrap
        text: card.run.fileCount > 0 ? Tr.t("activity.files", {count: card.run.fileCount}) : Tr.t("activity.files.none")
        font: Theme.label
        color: Theme.second
        Accessible.role: Accessible.Heading
    }
    ListTable {
        anchors.top: heading.bottom
        anchors.topMargin: Theme.space8
        anchors.bottom: foot.top
        anchors.bottomMargin: foot.visible ? Theme.space12 : 0
        width: parent.width
        visible: card.run.fileCount > 0
        radius: Theme.radiusField
        name: heading.text
        model: card.activity.files
        delegate: ActivityFileRow {}
    }
    Item {
        id: foot
        anchors.bottom: parent.bottom
        width: parent.width
        height: visible ? undo.height : 0
        visible: card.run.canUndo

        Button {
            id: undo
            iconName: "arrow.uturn.backward"
            text: Tr.t("activity.undo")
            shortcut: "Ctrl+Z"
            onClicked: card.activity.undo(card.run.runId)
        }
    }
}

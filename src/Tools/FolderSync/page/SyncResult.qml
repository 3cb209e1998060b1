import QtQuick
import Varnholt

// What the last sync came to, and what it could not do.
Card {
    id: card

    required property var folderSync
    readonly property var result: folderSync.result
    readonly property var errors: folderSync.errors

    implicitHeight: head.height + (problems.visible ? problems.y - head.height + problems.wanted : 0) + 2 * padding
    Accessible.role: Accessible.AlertMessage
    Accessible.name: result.text ?? ""

    Item {
        id: head
        width: parent.width
        height: Math.max(words.implicitHeight, buttons.height)

        Icon {
            id: shape
            y: Math.max(0, (words.y + Theme.space8 - 1))
            name: Theme.outcomeIcon(card.result.outcome ?? "")
            color: Theme.outcomeColor(card.result.outcome ?? "")
        }
        Label {
            id: words
            anchors.left: shape.right
            anchors.leftMargin: Theme.space12
            anchors.right: buttons.left
            anchors.rightMargin: Theme.space12
            height: Math.max(implicitHeight, buttons.height)
            text: card.result.text ?? ""
            font: Theme.medium
            wrapMode: Text.Wrap
        }
        Row {
            id: buttons
            anchors.right: parent.right
            spacing: Theme.space8

            Button {
                kind: "quiet"
                text: Tr.t("shell.close")
                onClicked: card.folderSync.dismiss()
            }
        }
    }
    Label {
        id: heading
        anchors.top: head.bottom
        anchors.topMargin: Theme.space12
        width: parent.width
        visible: problems.visible
        text: problems.name
        color: Theme.second
    }
    ListTable {
        id: problems
        readonly property real wanted: Math.max(1, count) * Theme.rowHeight + 2 * Theme.space4 + 1

        anchors.top: heading.bottom
        anchors.topMargin: Theme.space8
        width: parent.width
        height: Math.min(wanted, parent.height - y)
        visible: count > 0
        name: Tr.t("sync-page.problems", {count: count})
        model: card.errors
        delegate: TableRow {
            id: line
            required property string modelData

            implicitHeight: Theme.rowHeight
            name: modelData

            Icon {
                id: mark
                anchors.verticalCenter: parent.verticalCenter
                size: Theme.space12
                name: "exclamationmark.triangle"
                color: Theme.warning
            }
            Label {
                anchors.left: mark.right
                anchors.leftMargin: Theme.space8
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: line.modelData
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
        }
    }
}

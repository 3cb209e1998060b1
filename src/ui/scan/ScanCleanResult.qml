import QtQuick
import QtQuick.Templates as T
import Varnholt

// What was done, what was left and why, and the way back.
Card {
    id: card

    required property var junk
    property bool unfolded: false

    implicitHeight: head.height + (skipped.visible ? skipped.height + Theme.space8 : 0) + 2 * padding
    padding: Theme.space12
    Accessible.role: Accessible.AlertMessage
    Accessible.name: junk.resultText

    Item {
        id: head
        width: parent.width
        height: Math.max(buttons.height, words.implicitHeight)

        Icon {
            id: shape
            x: Theme.space4
            anchors.verticalCenter: parent.verticalCenter
            name: Theme.outcomeIcon(card.junk.resultOutcome)
            color: Theme.outcomeColor(card.junk.resultOutcome)
        }
        Label {
            id: words
            anchors.left: shape.right
            anchors.leftMargin: Theme.space12
            anchors.right: buttons.left
            anchors.rightMargin: Theme.space12
            anchors.verticalCenter: parent.verticalCenter
            text: card.junk.resultText
            font: Theme.medium
            wrapMode: Text.Wrap
        }
        Row {
            id: buttons
            anchors.right: parent.right
            spacing: Theme.space8

            Button {
                visible: card.junk.skippedDetails.length > 0
                kind: "quiet"
                text: card.unfolded ? Tr.t("cache.skipped.hide")
                                    : Tr.t("cache.skipped.show", {count: card.junk.skippedDetails.length})
                onClicked: card.unfolded = !card.unfolded
            }
            Button {
                visible: card.junk.canUndo
                iconName: "arrow.uturn.backward"
                text: card.junk.undoText
                shortcut: "Ctrl+Z"
                onClicked: card.junk.undo()
            }
            Button {
                kind: "quiet"
                text: Tr.t("shell.close")
                onClicked: card.junk.back()
            }
        }
    }
    ListView {
        id: skipped
        visible: card.unfolded && count > 0
        anchors.top: head.bottom
        anchors.topMargin: Theme.space8
        anchors.left: parent.left
        anchors.leftMargin: Theme.space32
        anchors.right: parent.right
        height: Math.min(contentHeight, 4 * Theme.space24)
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: visible
        model: card.junk.skippedDetails
        Accessible.role: Accessible.List
        Accessible.name: Tr.t("cache.skipped.show", {count: count})
        T.ScrollBar.vertical: ScrollBar {}

        delegate: Label {
            required property string modelData

            width: ListView.view.width - Theme.space16
            height: Theme.space24
            text: modelData
            color: Theme.second
            elide: Text.ElideMiddle
        }
    }
}

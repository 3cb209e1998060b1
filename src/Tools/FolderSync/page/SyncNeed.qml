import QtQuick
import Varnholt

// What a watched pair waits for, and the button that brings it further.
Rectangle {
    id: note

    required property var pair

    signal act(string what)

    implicitHeight: Math.max(words.implicitHeight, button.visible ? button.height : 0) + 2 * Theme.space12
    radius: Theme.radiusCard
    color: Theme.outcomeSoft(pair.outcome ?? "")
    Accessible.role: Accessible.AlertMessage
    Accessible.name: (pair.needTitle ?? "") + " " + (pair.needText ?? "")

    Icon {
        id: shape
        x: Theme.space16
        y: Theme.space12
        name: "exclamationmark.triangle"
        color: Theme.outcomeColor(note.pair.outcome ?? "")
    }
    Column {
        id: words
        anchors.left: shape.right
        anchors.leftMargin: Theme.space12
        anchors.right: button.visible ? button.left : parent.right
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: note.pair.needTitle ?? ""
            font: Theme.strong
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: note.pair.needText ?? ""
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
    Button {
        id: button
        readonly property string what: note.pair.needAct ?? ""

        visible: what !== ""
        anchors.right: parent.right
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        text: what === "edit" ? Tr.t("sync-page.change") : what === "plan" ? Tr.t("sync-page.show-plan") : Tr.t("sync-page.compare")
        onClicked: note.act(what)
    }
}

import QtQuick
import Varnholt

// What happened and to what, what was kept, what to do.
Rectangle {
    id: note

    property string title
    property string text
    property string kept
    property string actionText

    signal action

    implicitHeight: Math.max(words.implicitHeight, button.visible ? button.height : 0) + 2 * Theme.space12
    radius: Theme.radiusCard
    color: Theme.badSoft
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title + " " + text + " " + kept

    Icon {
        id: shape
        x: Theme.space16
        y: Theme.space12
        name: "exclamationmark.triangle"
        color: Theme.bad
    }
    Column {
        id: words
        anchors.left: shape.right
        anchors.leftMargin: Theme.space12
        anchors.right: button.visible ? button.left : parent.right
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space4

        Label {
            width: parent.width
            text: note.title
            font: Theme.strong
            wrapMode: Text.Wrap
        }
        Label {
            visible: text !== ""
            width: parent.width
            text: note.text
            wrapMode: Text.Wrap
        }
        Label {
            visible: text !== ""
            width: parent.width
            text: note.kept
            color: Theme.second
            wrapMode: Text.Wrap
        }
    }
    Button {
        id: button
        visible: text !== ""
        anchors.right: parent.right
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        text: note.actionText
        onClicked: note.action()
    }
}

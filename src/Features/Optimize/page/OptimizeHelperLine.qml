import QtQuick
import Varnholt

// That tasks are left out without the root helper, and the way to it. Its room is kept.
Item {
    id: line

    property bool shown: false

    signal helperWanted

    implicitHeight: Math.max(words.implicitHeight, button.height)

    Icon {
        id: shape
        anchors.verticalCenter: parent.verticalCenter
        visible: line.shown
        name: "lock.shield"
        color: Theme.second
    }
    Label {
        id: words
        anchors.left: shape.right
        anchors.leftMargin: Theme.space12
        anchors.right: button.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        visible: line.shown
        text: Tr.t("home.optimize.helper")
        color: Theme.second
        wrapMode: Text.Wrap
    }
    Button {
        id: button
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: line.shown
        text: Tr.t("home.optimize.helper.open")
        onClicked: line.helperWanted()
    }
}

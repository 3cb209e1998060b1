import QtQuick
import Varnholt

// One line that comes and goes at the foot of the content, with at most one thing that can be done about it.
Item {
    id: toast

    property string text
    property string actionText
    property var action

    function show(message: string) {
        offer(message, "", null);
    }

    function offer(message: string, word: string, act: var) {
        text = message;
        actionText = word;
        action = act;
        surface.visible = true;
        surface.opacity = 1;
        timer.restart();
    }

    FloatingSurface {
        id: surface
        visible: false
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.footHeight + Theme.space16
        width: Math.min(words.implicitWidth + 2 * Theme.space16 + button.room, parent.width - 2 * Theme.space32)
        height: Math.max(words.implicitHeight, button.visible ? button.height - Theme.space8 : 0) + 2 * Theme.space12
        Accessible.role: Accessible.AlertMessage
        Accessible.name: toast.text

        Label {
            id: words
            x: Theme.space16
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - 2 * Theme.space16 - button.room
            text: toast.text
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Button {
            id: button
            readonly property real room: visible ? implicitWidth + Theme.space8 : 0

            visible: toast.actionText !== ""
            anchors.right: parent.right
            anchors.rightMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            kind: "quiet"
            text: toast.actionText
            onActiveFocusChanged: activeFocus ? timer.stop() : timer.restart()
            onClicked: {
                surface.opacity = 0;
                toast.action();
            }
        }
        Behavior on opacity { NumberAnimation { duration: Theme.motion } }
        onOpacityChanged: if (opacity === 0) visible = false
    }

    Timer {
        id: timer
        interval: Theme.toastTime
        onTriggered: surface.opacity = 0
    }
}

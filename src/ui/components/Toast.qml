import QtQuick
import Varnholt

// One line that comes and goes at the foot of the content.
Item {
    id: toast

    property string text

    function show(message: string) {
        text = message;
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
        width: Math.min(words.implicitWidth + 2 * Theme.space16, parent.width - 2 * Theme.space32)
        height: words.implicitHeight + 2 * Theme.space12
        Accessible.role: Accessible.AlertMessage
        Accessible.name: toast.text

        Label {
            id: words
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.space16
            text: toast.text
            wrapMode: Text.Wrap
            Accessible.ignored: true
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

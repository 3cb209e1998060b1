import QtQuick
import Varnholt

// How much of a whole: 0 to 1, or -1 for work whose end is not known.
Rectangle {
    id: bar

    property real value: 0
    property color tone: Theme.accent
    property string name

    implicitHeight: Theme.barHeight
    radius: height / 2
    color: Theme.sunken
    clip: true
    Accessible.role: Accessible.ProgressBar
    Accessible.name: name

    Rectangle {
        id: filled
        height: parent.height
        radius: parent.radius
        color: bar.tone
        visible: bar.value !== 0
        width: bar.value < 0 ? parent.width / 4 : Math.max(height, parent.width * Math.min(1, bar.value))

        NumberAnimation on x {
            running: bar.value < 0 && bar.visible && Theme.motion > 0
            from: -filled.width
            to: bar.width
            duration: Theme.motion * 12
            loops: Animation.Infinite
            onRunningChanged: if (!running) filled.x = 0
        }
    }
}

import QtQuick
import QtQuick.Templates as T
import Varnholt

T.ScrollBar {
    id: control

    // Seen only while it is of use; for what scrolls beside the content.
    property bool quiet: false

    implicitWidth: Theme.scrollBarWidth
    implicitHeight: Theme.scrollBarWidth
    minimumSize: 0.06
    visible: size < 1
    padding: 2

    contentItem: Rectangle {
        radius: Math.min(width, height) / 2
        color: control.pressed || control.hovered ? Theme.third : Theme.control
        opacity: control.pressed || control.hovered ? 1 : control.active ? 0.6 : control.quiet ? 0 : 0.35
    }
}

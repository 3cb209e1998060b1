import QtQuick
import QtQuick.Templates as T
import Varnholt

// Something said of a node, which leads to it.
T.AbstractButton {
    id: line

    property string iconName
    property string title
    property color ink: Theme.text

    implicitHeight: words.implicitHeight + Theme.space8
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: title === "" ? text : title + ": " + text
    Keys.onReturnPressed: line.clicked()
    Keys.onEnterPressed: line.clicked()

    background: Rectangle {
        radius: Theme.radiusField
        color: line.hovered && line.enabled ? Theme.hover : "transparent"

        FocusRing {
            shown: line.visualFocus
            gap: -Theme.ring
            radius: parent.radius
        }
    }
    contentItem: Item {
        Icon {
            x: Theme.space4
            y: Theme.space4 + 1
            size: Theme.space12 + 2
            name: line.iconName
            color: line.ink
        }
        Column {
            id: words
            x: Theme.space24 + 2
            y: Theme.space4
            width: parent.width - x - Theme.space4

            Label {
                visible: text !== ""
                width: parent.width
                text: line.title
                font: Theme.medium
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                text: line.text
                color: line.title === "" ? Theme.text : Theme.second
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }
    }
}

import QtQuick
import Varnholt

// What would be here, and the button that brings it.
Column {
    id: empty

    property string iconName
    property string text
    property string detail
    property string actionText

    signal action

    spacing: Theme.space12

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Theme.rowHeightTwo
        height: width
        radius: Theme.radiusCard
        color: Theme.soft

        Icon {
            anchors.centerIn: parent
            size: Theme.space24 - Theme.space4
            name: empty.iconName
            color: Theme.accent
        }
    }
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, empty.width)
        text: empty.text
        font: Theme.strong
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
    }
    Label {
        visible: text !== ""
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, empty.width, Theme.textWidth)
        text: empty.detail
        color: Theme.second
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        lineHeight: 1.3
    }
    Button {
        visible: text !== ""
        anchors.horizontalCenter: parent.horizontalCenter
        text: empty.actionText
        onClicked: empty.action()
    }
}

import QtQuick
import Varnholt

// What is set, a line about it, and the control at the right.
Item {
    id: row

    property string title
    property string line
    property bool elideLine: false
    // Where the line tells of an outcome: which one.
    property string icon
    default property alias control: place.data

    width: parent ? parent.width : 0
    implicitHeight: Math.max(words.implicitHeight, place.height)

    Column {
        id: words
        anchors.left: parent.left
        anchors.right: place.left
        anchors.rightMargin: Theme.space24
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: row.title
            font: Theme.medium
        }
        Label {
            width: parent.width
            leftPadding: shape.visible ? Theme.space16 + Theme.space4 : 0
            text: row.line
            color: Theme.second
            wrapMode: row.elideLine ? Text.NoWrap : Text.Wrap
            elide: row.elideLine ? Text.ElideMiddle : Text.ElideNone

            Icon {
                id: shape
                visible: row.icon !== ""
                y: 2
                size: Theme.space12
                name: visible ? Theme.outcomeIcon(row.icon) : ""
                color: Theme.outcomeColor(row.icon)
            }
        }
    }
    Item {
        id: place
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: childrenRect.width
        height: childrenRect.height
    }
}

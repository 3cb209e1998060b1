import QtQuick
import QtQuick.Templates as T
import Varnholt

T.AbstractButton {
    id: item

    property string iconName
    property bool current: false
    property bool available: true
    property int busy: 0
    property string shortcut

    implicitHeight: Theme.itemHeight
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.description: busy > 0 ? Tr.t("shell.running", {count: busy}) : ""
    Accessible.selectable: true
    Accessible.selected: current
    Keys.onReturnPressed: item.clicked()
    Keys.onEnterPressed: item.clicked()

    readonly property color ink: current ? Theme.accent : available ? Theme.second : Theme.third

    Tooltip {
        wanted: item.shortcut !== "" && item.hovered && !item.down
        text: item.text
        shortcut: item.shortcut
    }

    background: Rectangle {
        radius: Theme.radiusButton
        color: item.current ? Theme.soft : item.hovered ? Theme.sidebarHover : "transparent"

        FocusRing {
            gap: -Theme.ring
            shown: item.visualFocus
        }
    }

    contentItem: Item {
        Icon {
            id: shape
            x: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            name: item.iconName
            color: item.ink
        }
        Label {
            anchors.left: shape.right
            anchors.leftMargin: Theme.space8 + 1
            anchors.right: extra.left
            anchors.rightMargin: Theme.space4
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            font: item.current ? Theme.medium : Theme.body
            color: item.current ? Theme.accent : Theme.second
            Accessible.ignored: true
        }
        Label {
            id: extra
            anchors.right: parent.right
            anchors.rightMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            text: item.busy > 1 ? item.busy : ""
            font: Theme.label
            color: Theme.second
            Accessible.ignored: true
        }
        Rectangle {
            visible: item.busy === 1
            anchors.right: extra.right
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.dot
            height: Theme.dot
            radius: width / 2
            color: Theme.accent
        }
    }
}

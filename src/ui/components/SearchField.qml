import QtQuick
import Varnholt

Field {
    id: field

    leftPadding: Theme.space32
    rightPadding: clear.visible ? Theme.space32 : Theme.space12

    // Escape first empties the field; only an empty field lets it through.
    Keys.onEscapePressed: event => {
        if (field.length === 0) {
            event.accepted = false;
            return;
        }
        field.clear();
    }

    Icon {
        x: Theme.space8 + 2
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        color: Theme.third
    }

    Item {
        id: clear
        visible: field.length > 0
        anchors.right: parent.right
        width: Theme.space32
        height: parent.height
        Accessible.role: Accessible.Button
        Accessible.name: Tr.t("shell.search.clear")
        Accessible.onPressAction: field.clear()

        Icon {
            anchors.centerIn: parent
            size: Theme.space12
            name: "xmark"
            color: clearArea.containsMouse ? Theme.text : Theme.third
        }
        MouseArea {
            id: clearArea
            anchors.fill: parent
            hoverEnabled: true
            cursorShape: Qt.ArrowCursor
            onClicked: field.clear()
        }
    }
}

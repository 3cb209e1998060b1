import QtQuick
import Varnholt

// A row of a ListTable: its hover, its ring and the rule under it. What it shows is its content.
Item {
    id: row

    required property int index
    property ListView view: ListView.view
    property bool chosen: false
    property bool ruled: index < (view ? view.count - 1 : 0)
    property string name
    // What a ContextMenu offers for this row: a function that tells its acts; without one there is no menu.
    property var acts: null
    default property alias content: inside.data

    signal clicked
    signal doubleClicked

    function offerActs(x: real, y: real) {
        if (acts === null)
            return;
        menu.active = true;
        menu.item.offer(acts(), row, x, y);
    }

    implicitWidth: view ? view.width : 0
    implicitHeight: Theme.rowHeightTwo
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.selectable: true
    Accessible.selected: chosen
    Accessible.onPressAction: row.clicked()

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: Theme.space4
        anchors.rightMargin: Theme.space4
        radius: Theme.radiusField
        color: row.chosen ? Theme.soft : mouse.containsMouse ? Theme.hover : "transparent"

        FocusRing {
            id: ring
            gap: -Theme.ring
            radius: parent.radius
            shown: row.view !== null && row.view.activeFocus && row.view.currentIndex === row.index
        }
    }
    Rectangle {
        visible: row.ruled && !row.chosen && !ring.shown
        x: Theme.space16
        width: parent.width - 2 * Theme.space16
        anchors.bottom: parent.bottom
        height: Theme.hairline
        color: Theme.line
    }
    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: row.acts === null ? Qt.LeftButton : Qt.LeftButton | Qt.RightButton
        onClicked: event => {
            row.view.currentIndex = row.index;
            row.view.forceActiveFocus();
            if (event.button === Qt.RightButton)
                row.offerActs(event.x, event.y);
            else
                row.clicked();
        }
        onDoubleClicked: event => {
            if (event.button === Qt.LeftButton)
                row.doubleClicked();
        }
    }
    Loader {
        id: menu
        active: false
        sourceComponent: ContextMenu {}
    }
    Item {
        id: inside
        anchors.fill: parent
        anchors.leftMargin: Theme.space16
        anchors.rightMargin: Theme.space16
    }
}

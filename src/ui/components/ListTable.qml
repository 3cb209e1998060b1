import QtQuick
import QtQuick.Templates as T
import Varnholt

// Rows of a model in a card: one tab stop, arrow keys inside, space selects, return opens. Only the rows in
// view exist, and they are used again while scrolling, so tens of thousands cost no more than a screenful.
Card {
    id: table

    property alias model: list.model
    property alias delegate: list.delegate
    property alias currentIndex: list.currentIndex
    // The list does not tell of a count that changed twice between two layouts, but its model does.
    property int count: list.count
    property alias list: list
    readonly property var rows: list.model?.modelReset !== undefined ? list.model : null
    property alias header: top.sourceComponent
    property string name

    signal selected(int row)
    signal opened(int row)
    // The keyboard has come to another row.
    signal moved(int row)

    function focusRow(row: int) {
        list.forceActiveFocus();
        list.currentIndex = row;
    }

    function recount() {
        count = rows.rowCount();
    }

    padding: 0
    onRowsChanged: if (rows) recount()

    Connections {
        target: table.rows
        function onModelReset() { table.recount(); }
        function onRowsInserted() { table.recount(); }
        function onRowsRemoved() { table.recount(); }
    }
    Loader {
        id: top
        width: parent.width
        height: item ? Theme.rowHeight : 0
    }
    Rectangle {
        visible: top.item !== null
        anchors.top: top.bottom
        width: parent.width
        height: Theme.hairline
        color: Theme.line
    }
    ListView {
        id: list
        anchors.fill: parent
        anchors.topMargin: top.height + (top.item ? Theme.hairline : 0)
        anchors.bottomMargin: Theme.space4
        topMargin: Theme.space4
        clip: true
        reuseItems: true
        activeFocusOnTab: count > 0 || activeFocus
        keyNavigationEnabled: true
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        currentIndex: -1
        cacheBuffer: Theme.windowHeight / 2
        Accessible.role: Accessible.List
        Accessible.name: table.name

        onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0) currentIndex = 0
        onCurrentItemChanged: if (activeFocus && currentItem) table.moved(currentIndex)
        Keys.onSpacePressed: if (currentIndex >= 0) table.selected(currentIndex)
        Keys.onReturnPressed: if (currentIndex >= 0) table.opened(currentIndex)
        Keys.onEnterPressed: if (currentIndex >= 0) table.opened(currentIndex)
        Keys.onPressed: event => {
            if (App.isMenuKey(event.key, event.modifiers)) {
                currentItem?.offerActs?.(Theme.space24, currentItem.height);
                event.accepted = true;
                return;
            }
            const page = Math.max(1, Math.floor(height / Theme.rowHeightTwo) - 1);
            const moves = {
                [Qt.Key_Home]: 0,
                [Qt.Key_End]: count - 1,
                [Qt.Key_PageUp]: Math.max(0, currentIndex - page),
                [Qt.Key_PageDown]: Math.min(count - 1, currentIndex + page)
            };
            if (!(event.key in moves))
                return;
            currentIndex = moves[event.key];
            event.accepted = true;
        }

        T.ScrollBar.vertical: ScrollBar {}
    }
}

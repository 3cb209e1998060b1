import QtQuick
import QtQuick.Templates as T
import Varnholt

// The heading of a column that the rows can be ordered by: pressed once for its order, again for the other way round.
T.AbstractButton {
    id: heading

    property string key
    property bool numbers: false
    // {key, descending}
    property var order: ({})
    readonly property bool ordered: order.key === key

    signal wanted(string key)

    implicitWidth: words.implicitWidth + Theme.space12 + 2
    implicitHeight: Theme.rowHeight
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    Accessible.role: Accessible.ColumnHeader
    Accessible.name: text
    Accessible.description: !ordered ? "" : order.descending ? Tr.t("shell.order.descending") : Tr.t("shell.order.ascending")
    Keys.onReturnPressed: heading.clicked()
    Keys.onEnterPressed: heading.clicked()
    onClicked: wanted(key)

    background: FocusRing {
        gap: -Theme.ring
        radius: Theme.radiusSmall
        shown: heading.visualFocus
    }
    contentItem: Item {
        Label {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            x: heading.numbers ? parent.width - width : 0
            width: Math.min(implicitWidth, parent.width - (arrow.visible ? arrow.width + 2 : 0))
            text: heading.text
            font: heading.ordered ? Theme.labelMedium : Theme.label
            color: heading.ordered || heading.hovered ? Theme.text : Theme.third
            Accessible.ignored: true
        }
        Icon {
            id: arrow
            visible: heading.ordered
            anchors.verticalCenter: parent.verticalCenter
            x: heading.numbers ? words.x - width - 2 : words.width + 2
            size: Theme.space12 - 2
            name: "chevron.down"
            rotation: heading.order.descending ? 0 : 180
            color: Theme.text
        }
    }
}

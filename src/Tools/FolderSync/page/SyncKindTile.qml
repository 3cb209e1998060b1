import QtQuick
import QtQuick.Templates as T
import Varnholt

// How much of one kind of change; pressed, the list shows only that.
T.AbstractButton {
    id: tile

    required property string value
    required property string title
    required property string countText
    required property string sizeText
    property bool chosen: false
    property SyncKinds marks: SyncKinds {}

    text: title
    implicitHeight: column.implicitHeight + 2 * Theme.space8
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: [title + " " + countText, sizeText].filter(part => part !== "").join(", ")
    Accessible.checkable: true
    Accessible.checked: chosen
    Keys.onReturnPressed: tile.clicked()
    Keys.onEnterPressed: tile.clicked()

    background: Rectangle {
        radius: Theme.radiusButton
        color: tile.chosen ? Theme.soft : tile.enabled && (tile.down || tile.hovered) ? Theme.hover : Theme.surface
        border.width: Theme.hairline
        border.color: tile.chosen ? Theme.accent : Theme.line

        FocusRing { shown: tile.visualFocus }
    }
    contentItem: Item {
        implicitHeight: column.implicitHeight

        Column {
            id: column
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.margins: Theme.space8 + 2
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Row {
                width: parent.width
                spacing: Theme.space4 + 2

                Icon {
                    id: shape
                    anchors.verticalCenter: parent.verticalCenter
                    size: Theme.space12
                    name: tile.marks.icon(tile.value)
                    color: tile.enabled ? tile.marks.color(tile.value) : Theme.third
                }
                Label {
                    width: parent.width - shape.width - parent.spacing
                    text: tile.title
                    font: Theme.label
                    color: Theme.second
                    Accessible.ignored: true
                }
            }
            Item {
                width: parent.width
                height: figure.implicitHeight

                Label {
                    id: figure
                    text: tile.countText
                    font: Theme.strong
                    color: tile.enabled ? Theme.text : Theme.disabled
                    Accessible.ignored: true
                }
                Label {
                    anchors.right: parent.right
                    anchors.baseline: figure.baseline
                    visible: figure.implicitWidth + implicitWidth + Theme.space8 <= parent.width
                    text: tile.sizeText
                    font: Theme.label
                    color: Theme.second
                    Accessible.ignored: true
                }
            }
        }
    }
}

import QtQuick
import QtQuick.Templates as T
import Varnholt

// The kinds of nodes, one to choose.
T.Popup {
    id: menu

    required property var editor
    property var at: null
    // Where it stands in its parent; nothing: at the button that adds.
    property var spot: null

    signal picked(string kind, var at)

    function openAt(place: point, x: real, y: real) {
        at = place;
        spot = Qt.point(x, y);
        open();
    }

    function pick(kind: string) {
        const place = at;
        close();
        picked(kind, place);
    }

    x: spot ? Math.max(Theme.space8, Math.min(spot.x, parent.width - width - Theme.space8)) : Theme.space12
    y: Math.max(Theme.space8, spot ? Math.min(spot.y, parent.height - height - Theme.space8)
        : parent.height - height - Theme.space12 - Theme.rowHeight - Theme.space8)
    width: Math.min(Theme.inspectorWidth, parent.width - 2 * Theme.space8)
    height: Math.min(list.contentHeight + 2 * padding, parent.height - 2 * Theme.space16)
    padding: Theme.space4
    focus: true
    modal: false
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onAboutToShow: list.currentIndex = 0
    onOpened: list.forceActiveFocus(Qt.TabFocusReason)
    onAboutToHide: at = null
    onClosed: spot = null
    background: FloatingSurface {}

    contentItem: ListView {
        id: list
        clip: true
        focus: true
        keyNavigationWraps: true
        currentIndex: 0
        model: menu.editor.addOptions
        Accessible.role: Accessible.PopupMenu
        Accessible.name: Tr.t("nodes-page.add")
        Keys.onReturnPressed: menu.pick(currentItem.modelData.value)
        Keys.onEnterPressed: menu.pick(currentItem.modelData.value)
        Keys.onSpacePressed: menu.pick(currentItem.modelData.value)
        T.ScrollBar.vertical: ScrollBar {}

        delegate: T.ItemDelegate {
            id: choice
            required property var modelData
            required property int index

            width: list.width
            implicitHeight: words.implicitHeight + 2 * Theme.space4 + 2
            highlighted: list.currentIndex === index
            hoverEnabled: true
            onHoveredChanged: if (hovered) list.currentIndex = index
            onClicked: menu.pick(modelData.value)
            Accessible.role: Accessible.MenuItem
            Accessible.name: modelData.title
            Accessible.description: modelData.line

            contentItem: Item {
                Icon {
                    id: picture
                    x: Theme.space8
                    anchors.verticalCenter: parent.verticalCenter
                    name: choice.modelData.icon
                    color: choice.highlighted ? Theme.accent : Theme.text
                }
                Column {
                    id: words
                    anchors.left: picture.right
                    anchors.leftMargin: Theme.space8 + 2
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.space8
                    anchors.verticalCenter: parent.verticalCenter

                    Label {
                        width: parent.width
                        text: choice.modelData.title
                        color: choice.highlighted ? Theme.accent : Theme.text
                        Accessible.ignored: true
                    }
                    Label {
                        width: parent.width
                        text: choice.modelData.line
                        font: Theme.label
                        color: Theme.second
                        wrapMode: Text.Wrap
                        Accessible.ignored: true
                    }
                }
            }
            background: Rectangle {
                radius: Theme.radiusField
                color: choice.highlighted ? Theme.soft : "transparent"
            }
        }
    }
}

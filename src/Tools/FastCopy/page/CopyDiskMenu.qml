import QtQuick
import QtQuick.Templates as T
import Varnholt

// The whole disks of this machine, one to choose.
T.Popup {
    id: menu

    required property var copying

    function openAt(button: Item) {
        copying.lookForDisks();
        const place = button.mapToItem(parent, 0, button.height + Theme.space4);
        x = Math.max(Theme.space8, Math.min(place.x, parent.width - width - Theme.space8));
        y = Math.max(Theme.space8, Math.min(place.y, parent.height - implicitHeight - Theme.space8));
        open();
    }

    function pick(disk: var) {
        if (!disk || disk.fault !== "")
            return;
        close();
        copying.addDisk(disk.value);
    }

    parent: T.Overlay.overlay
    width: Theme.paneWidth
    implicitHeight: Math.max(Theme.rowHeightTwo, Math.min(list.contentHeight, 6 * Theme.rowHeightTwo)) + 2 * padding
    padding: Theme.space4
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onOpened: {
        list.currentIndex = 0;
        list.forceActiveFocus(Qt.TabFocusReason);
    }
    background: FloatingSurface {}

    contentItem: ListView {
        id: list
        clip: true
        focus: true
        keyNavigationWraps: true
        currentIndex: 0
        model: menu.copying.disks
        Accessible.role: Accessible.PopupMenu
        Accessible.name: Tr.t("copy-page.add-disk.name")
        Keys.onReturnPressed: menu.pick(currentItem?.modelData)
        Keys.onEnterPressed: menu.pick(currentItem?.modelData)
        Keys.onSpacePressed: menu.pick(currentItem?.modelData)
        T.ScrollBar.vertical: ScrollBar {}

        Label {
            anchors.centerIn: parent
            visible: list.count === 0
            text: Tr.t("copy-page.no-disks")
            color: Theme.second
        }
        delegate: T.ItemDelegate {
            id: choice
            required property var modelData
            required property int index

            width: list.width
            implicitHeight: Theme.rowHeightTwo
            enabled: modelData.fault === ""
            highlighted: list.currentIndex === index
            hoverEnabled: true
            onHoveredChanged: if (hovered) list.currentIndex = index
            onClicked: menu.pick(modelData)
            Accessible.role: Accessible.MenuItem
            Accessible.name: [modelData.title, modelData.detail, modelData.fault].filter(text => text !== "").join(", ")

            contentItem: Item {
                Icon {
                    id: picture
                    x: Theme.space8
                    anchors.verticalCenter: parent.verticalCenter
                    name: "externaldrive"
                    color: choice.enabled ? Theme.text : Theme.disabled
                }
                Column {
                    anchors.left: picture.right
                    anchors.leftMargin: Theme.space12
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.space8
                    anchors.verticalCenter: parent.verticalCenter

                    Label {
                        width: parent.width
                        text: choice.modelData.title
                        elide: Text.ElideMiddle
                        color: choice.enabled ? Theme.text : Theme.disabled
                        Accessible.ignored: true
                    }
                    Label {
                        width: parent.width
                        text: choice.modelData.fault === "" ? choice.modelData.detail : choice.modelData.detail + " · " + choice.modelData.fault
                        font: Theme.label
                        elide: Text.ElideMiddle
                        color: Theme.second
                        Accessible.ignored: true
                    }
                }
            }
            background: Rectangle {
                radius: Theme.radiusField
                color: choice.highlighted && choice.enabled ? Theme.soft : "transparent"
            }
        }
    }
}

import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Varnholt

// What can be done with one thing, where it stands: by right click, the Menu key or Shift+F10.
T.Menu {
    id: menu

    // [{text, icon, shortcut, enabled, act}], of which only text and act are needed. Shortcuts are shown; the page has them.
    property var acts: []
    // What had the keyboard, and gets it back.
    property Item before

    function offer(acts: var, item: Item, x: real, y: real) {
        menu.acts = acts;
        before = item.Window.activeFocusItem;
        if (acts.length === 0)
            return;
        popup(item, x, y);
        currentIndex = acts.findIndex(act => act.enabled ?? true);
    }

    readonly property real widest: acts.reduce((most, act) => Math.max(most, metrics.advanceWidth(act.text)
        + (act.shortcut ? metrics.advanceWidth(App.keyText(act.shortcut)) + Theme.space24 : 0)), 0)

    implicitWidth: Math.ceil(widest) + Theme.iconSize + 2 * padding + Theme.space8 + 2 * Theme.space12
    implicitHeight: contentItem.implicitHeight + 2 * padding
    padding: Theme.space4
    margins: Theme.space8
    overlap: 1
    onClosed: before?.forceActiveFocus(Qt.PopupFocusReason)
    background: FloatingSurface {}
    contentItem: ListView {
        implicitHeight: contentHeight
        clip: true
        interactive: contentHeight > height
        model: menu.contentModel
        currentIndex: menu.currentIndex
        Accessible.role: Accessible.PopupMenu
    }

    FontMetrics {
        id: metrics
        font: Theme.body
    }
    Instantiator {
        model: menu.acts
        onObjectAdded: (index, object) => menu.insertItem(index, object)
        onObjectRemoved: (index, object) => menu.removeItem(object)

        T.MenuItem {
            id: entry
            required property var modelData

            readonly property color ink: !enabled ? Theme.disabled : highlighted ? Theme.accent : Theme.text

            implicitHeight: Theme.itemHeight + 2
            hoverEnabled: true
            text: modelData.text
            enabled: modelData.enabled ?? true
            Accessible.name: text
            // After the menu has gone, so that a sheet which opens keeps the keyboard.
            onTriggered: Qt.callLater(modelData.act)

            contentItem: Item {
                Icon {
                    id: picture
                    x: Theme.space8
                    anchors.verticalCenter: parent.verticalCenter
                    name: entry.modelData.icon ?? ""
                    color: entry.ink
                }
                Label {
                    anchors.left: picture.right
                    anchors.leftMargin: Theme.space8
                    anchors.right: keys.left
                    anchors.verticalCenter: parent.verticalCenter
                    text: entry.text
                    color: entry.ink
                    Accessible.ignored: true
                }
                Label {
                    id: keys
                    anchors.right: parent.right
                    anchors.rightMargin: Theme.space8
                    anchors.verticalCenter: parent.verticalCenter
                    text: entry.modelData.shortcut ? App.keyText(entry.modelData.shortcut) : ""
                    color: Theme.second
                    Accessible.ignored: true
                }
            }
            background: Rectangle {
                radius: Theme.radiusField
                color: entry.highlighted && entry.enabled ? Theme.soft : "transparent"
            }
        }
    }
}

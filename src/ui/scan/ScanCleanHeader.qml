import QtQuick
import Varnholt

// Chooses or clears all that is shown.
Item {
    id: header

    required property var junk

    CheckBox {
        id: box
        x: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        text: Tr.t("cache.select-all")
        tristate: true
        enabled: header.junk.itemCount > 0 && !header.junk.isCleaning
        checkState: header.junk.shownSelection === "all" ? Qt.Checked
            : header.junk.shownSelection === "some" ? Qt.PartiallyChecked : Qt.Unchecked
        // The view-model says what is checked; the box only asks.
        nextCheckState: () => checkState
        onClicked: header.junk.toggleSelectAll()
    }
    Label {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        text: Tr.t("cache.size")
        font: Theme.label
        color: Theme.third
    }
}

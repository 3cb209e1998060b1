import QtQuick
import Varnholt

// What will be done, in numbers; while it is being done, how far it is.
Item {
    id: foot

    required property var junk

    Row {
        visible: !foot.junk.isCleaning
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space4

        Label {
            text: Tr.t("cache.selected", {count: foot.junk.selectedCount})
            font: foot.junk.selectedCount > 0 ? Theme.strong : Theme.body
            color: foot.junk.selectedCount > 0 ? Theme.text : Theme.second
        }
        Label {
            visible: foot.junk.selectedCount > 0
            text: "· " + foot.junk.selectedText
        }
    }
    Row {
        visible: !foot.junk.isCleaning
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space16

        Row {
            visible: foot.width > Theme.wideWidth

            Parts {
                place: "scan"
                given: ({toolId: foot.junk.toolID})
            }
        }
        SegmentedControl {
            anchors.verticalCenter: parent.verticalCenter
            name: Tr.t("cache.method")
            options: [
                {value: "trash", title: Tr.t("cache.method.trash")},
                {value: "permanent", title: Tr.t("cache.method.permanent")}
            ]
            value: foot.junk.method
            onChosen: value => foot.junk.method = value
        }
        Button {
            kind: "main"
            text: Tr.t("cache.review")
            shortcut: "Ctrl+R"
            enabled: foot.junk.selectedCount > 0 && !foot.junk.isScanning
            onClicked: foot.junk.review()
        }
    }

    Item {
        visible: foot.junk.isCleaning
        anchors.fill: parent

        Label {
            id: doing
            anchors.left: parent.left
            anchors.right: stop.left
            anchors.rightMargin: Theme.space24
            y: Theme.space12
            text: foot.junk.progressText
            elide: Text.ElideMiddle
        }
        Bar {
            anchors.left: parent.left
            anchors.right: doing.right
            anchors.top: doing.bottom
            anchors.topMargin: Theme.space8
            value: foot.junk.progress
            name: Tr.t("cache.cleaning")
        }
        Button {
            id: stop
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            iconName: "stop"
            text: Tr.t("shell.stop")
            shortcut: "Ctrl+."
            onClicked: foot.junk.stop()
        }
    }
}

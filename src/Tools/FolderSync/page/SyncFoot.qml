import QtQuick
import Varnholt

// What will happen, in numbers, and the button that does it; while it happens, how far it is.
Item {
    id: foot

    required property var folderSync
    readonly property bool works: folderSync.phase === "planning" || folderSync.phase === "running"

    // A button that is hidden would keep the keyboard.
    onWorksChanged: {
        const held = [compare, main, stop].find(button => button.activeFocus);
        if (held)
            (works ? stop : main.enabled ? main : compare).forceActiveFocus(held.focusReason);
    }

    // As high as its words are.
    implicitHeight: Math.max(Theme.footHeight, words.implicitHeight + 2 * Theme.space12)

    Label {
        id: words
        visible: !foot.works
        anchors.left: parent.left
        anchors.right: buttons.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        text: foot.folderSync.busyText !== "" ? foot.folderSync.busyText
            : foot.folderSync.planText !== "" ? foot.folderSync.planText
            : Tr.t("sync-page.foot")
        font: foot.folderSync.actionCount > 0 && foot.folderSync.busyText === "" ? Theme.strong : Theme.body
        color: foot.folderSync.actionCount > 0 ? Theme.text : Theme.second
        wrapMode: Text.Wrap
    }
    Row {
        id: buttons
        visible: !foot.works
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space12

        Button {
            id: compare
            text: foot.folderSync.hasPlan ? Tr.t("sync-page.compare-again") : Tr.t("sync-page.compare")
            enabled: foot.folderSync.canSync
            onClicked: foot.folderSync.compare()
        }
        Button {
            id: main
            kind: "main"
            iconName: "arrow.triangle.2.circlepath"
            text: foot.folderSync.actionCount > 0 ? Tr.t("sync-page.sync.count", {count: foot.folderSync.actionCount}) : Tr.t("sync-page.sync")
            shortcut: "Ctrl+R"
            enabled: foot.folderSync.canSync && foot.folderSync.busyText === ""
                && !(foot.folderSync.hasPlan && foot.folderSync.actionCount === 0)
            onClicked: foot.folderSync.sync()
        }
    }

    Item {
        visible: foot.works
        anchors.fill: parent

        Label {
            id: doing
            anchors.left: parent.left
            y: Theme.space12
            width: Math.min(implicitWidth, current.text === "" ? bar.width : bar.width * Theme.mainShare)
            text: foot.folderSync.progressText
            elide: Text.ElideMiddle
        }
        Label {
            id: current
            anchors.left: doing.right
            anchors.leftMargin: Theme.space16
            anchors.right: bar.right
            anchors.baseline: doing.baseline
            text: foot.folderSync.currentText
            font: Theme.label
            color: Theme.second
            horizontalAlignment: Text.AlignRight
            elide: Text.ElideMiddle
        }
        Bar {
            id: bar
            anchors.left: parent.left
            anchors.right: stop.left
            anchors.rightMargin: Theme.space24
            anchors.top: doing.bottom
            anchors.topMargin: Theme.space8
            value: foot.folderSync.progress
            name: foot.folderSync.progressText
        }
        Button {
            id: stop
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            iconName: "stop"
            text: Tr.t("shell.stop")
            shortcut: "Ctrl+."
            enabled: !foot.folderSync.isStopping
            onClicked: foot.folderSync.stop()
        }
    }
}

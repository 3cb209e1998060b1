import QtQuick
import Varnholt

// What will be copied in numbers, or why it cannot be.
Item {
    id: foot

    required property var copying
    readonly property bool isClone: copying.options.mode === "clone"

    // As high as its words are.
    implicitHeight: Math.max(Theme.footHeight, words.implicitHeight + 2 * Theme.space12)

    signal helperWanted
    signal begun(int focusReason)

    Icon {
        id: shape
        anchors.verticalCenter: parent.verticalCenter
        visible: !foot.copying.canRun
        name: "info.circle"
        color: Theme.second
    }
    Label {
        id: words
        anchors.left: shape.visible ? shape.right : parent.left
        anchors.leftMargin: shape.visible ? Theme.space8 : 0
        anchors.right: buttons.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        text: foot.copying.canRun ? [foot.copying.planText, foot.copying.largestText].filter(text => text !== "").join(" · ") : foot.copying.blocker
        color: foot.copying.canRun ? Theme.text : Theme.second
        wrapMode: Text.Wrap
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space12

        Button {
            kind: "quiet"
            text: Tr.t("copy-page.clear")
            onClicked: foot.copying.clear()
        }
        Button {
            visible: foot.copying.lacksHelper
            text: Tr.t("copy-page.set-up")
            onClicked: foot.helperWanted()
        }
        Button {
            id: main
            kind: "main"
            iconName: "arrow.triangle.branch"
            shortcut: "Ctrl+R"
            enabled: foot.copying.canRun
            text: foot.copying.isActive && !foot.copying.runTogether ? Tr.t("copy-page.run.queue")
                : foot.copying.hasDisk ? Tr.t("copy-page.run.disk")
                : foot.isClone ? Tr.t("copy-page.run.clone") : Tr.t("copy-page.run.copy")
            onClicked: {
                const reason = main.focusReason;
                foot.copying.run();
                foot.begun(reason);
            }
        }
    }
}

import QtQuick
import Varnholt

// What the cache tool has found, and the way to it.
Card {
    id: card

    required property var junk
    readonly property bool known: junk.stage !== "idle" && !junk.isScanning && junk.errorMessage === ""

    signal opened

    function line(): string {
        if (junk.errorMessage !== "")
            return junk.errorMessage;
        if (junk.isScanning)
            return junk.progressText;
        if (!known)
            return Tr.t("home.junk.idle");
        return junk.itemCount === 0 ? Tr.t("home.junk.none") : Tr.t("home.junk.found", {count: junk.itemCount});
    }

    Label {
        id: title
        anchors.left: parent.left
        anchors.right: amount.left
        text: Tr.t("home.junk")
        font: Theme.strong
        height: amount.height
    }
    Label {
        id: amount
        anchors.right: parent.right
        text: card.known ? card.junk.totalText : ""
        font: Theme.strong
        height: implicitHeight
    }
    Label {
        id: words
        anchors.top: title.bottom
        anchors.topMargin: Theme.space8
        width: parent.width
        text: card.line()
        color: Theme.second
        wrapMode: Text.Wrap
        maximumLineCount: 2
    }
    StackedBar {
        id: stack
        anchors.top: words.bottom
        anchors.topMargin: Theme.space12
        width: parent.width
        height: Theme.barHeight
        visible: !card.junk.isScanning
        parts: card.known ? card.junk.categories : []
    }
    Bar {
        anchors.fill: stack
        visible: card.junk.isScanning
        value: card.junk.progress
        name: Tr.t("cache.scanning")
    }
    Legend {
        anchors.top: stack.bottom
        anchors.topMargin: Theme.space8
        width: parent.width
        height: Theme.space16
        clip: true
        compact: naturalWidth > width
        parts: stack.parts
    }
    Row {
        anchors.bottom: parent.bottom
        spacing: Theme.space16

        Button {
            kind: "main"
            iconName: card.known ? "trash" : "magnifyingglass"
            text: card.known ? Tr.t("home.junk.review") : Tr.t("home.junk.scan")
            enabled: !card.junk.isScanning
            onClicked: card.known ? card.opened() : card.junk.scan()
        }
        Button {
            text: card.junk.isScanning ? Tr.t("shell.stop") : Tr.t("home.junk.again")
            visible: card.known || card.junk.isScanning
            onClicked: card.junk.isScanning ? card.junk.stop() : card.junk.scan()
        }
    }
}

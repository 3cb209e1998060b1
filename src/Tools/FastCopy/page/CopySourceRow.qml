import QtQuick
import Varnholt

// One source: what it is called and where it lies, or what is wrong with it.
TableRow {
    id: row

    required property var modelData

    signal takenOut

    acts: () => [
        {text: Tr.t("shell.open-folder"), icon: "folder", enabled: modelData.fault === "" && !modelData.isDisk, act: () => Qt.openUrlExternally(App.folderUrl(modelData.path))},
        {text: Tr.t("shell.copy-path"), icon: "doc.on.doc.fill", act: () => App.copyText(modelData.path)},
        {text: Tr.t("copy-page.act.take-out"), icon: "xmark", shortcut: "Del", act: () => takenOut()}
    ]
    onDoubleClicked: if (modelData.fault === "" && !modelData.isDisk) Qt.openUrlExternally(App.folderUrl(modelData.path))
    name: [modelData.name, modelData.fault, modelData.path].filter(text => text !== "").join(", ")

    Icon {
        id: shape
        anchors.verticalCenter: parent.verticalCenter
        name: row.modelData.fault === "" ? row.modelData.icon : "exclamationmark.triangle"
        color: row.modelData.fault === "" ? Theme.second : Theme.bad
    }
    implicitHeight: Math.max(Theme.rowHeightTwo, words.implicitHeight + 2 * Theme.space4)

    Column {
        id: words
        anchors.left: shape.right
        anchors.leftMargin: Theme.space12
        anchors.right: out.left
        anchors.rightMargin: Theme.space4
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            text: row.modelData.name
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: row.modelData.fault === "" ? row.modelData.path : row.modelData.fault
            font: Theme.label
            color: row.modelData.fault === "" ? Theme.second : Theme.bad
            elide: row.modelData.fault === "" ? Text.ElideMiddle : Text.ElideNone
            wrapMode: row.modelData.fault === "" ? Text.NoWrap : Text.Wrap
            Accessible.ignored: true
        }
    }
    IconButton {
        id: out
        anchors.right: parent.right
        anchors.rightMargin: -Theme.space8
        anchors.verticalCenter: parent.verticalCenter
        iconName: "xmark"
        ink: Theme.second
        text: Tr.t("copy-page.take-out", {name: row.modelData.name})
        // The list's own Delete does the same.
        focusPolicy: Qt.NoFocus
        onClicked: row.takenOut()
    }
}

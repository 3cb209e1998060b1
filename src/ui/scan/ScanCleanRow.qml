import QtQuick
import Varnholt

TableRow {
    id: row

    required property string itemId
    required property string displayPath
    required property string sizeText
    required property real fraction
    required property bool selected
    required property bool isProtected
    required property bool isRecent
    required property var model

    signal toggled(string id)

    name: model.name + ", " + sizeText + (isProtected ? ", " + Tr.t("cache.protected") : "") + (isRecent ? ", " + Tr.t("cache.recent") : "")
    Accessible.checkable: true
    Accessible.checked: selected
    acts: () => [
        {text: selected ? Tr.t("cache.act.exclude") : Tr.t("cache.act.include"), icon: selected ? "minus" : "checkmark", shortcut: "Space", act: () => toggled(itemId)},
        {text: Tr.t("shell.open-folder"), icon: "folder", act: () => Qt.openUrlExternally(App.folderUrl(displayPath))},
        {text: Tr.t("shell.copy-path"), icon: "doc.on.doc.fill", act: () => App.copyText(displayPath)}
    ]
    onClicked: toggled(itemId)
    // Both clicks have turned it, and back.
    onDoubleClicked: Qt.openUrlExternally(App.folderUrl(displayPath))

    CheckMark {
        id: box
        anchors.verticalCenter: parent.verticalCenter
        state: row.selected ? "all" : "none"
    }
    Column {
        id: words
        anchors.left: box.right
        anchors.leftMargin: Theme.space12
        anchors.right: share.left
        anchors.rightMargin: Theme.space24
        anchors.verticalCenter: parent.verticalCenter

        Item {
            width: parent.width
            height: title.implicitHeight

            Label {
                id: title
                width: Math.min(implicitWidth, words.width - (lock.visible ? lock.width + Theme.space8 : 0))
                text: row.model.name
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            Badge {
                id: lock
                anchors.left: title.right
                anchors.leftMargin: Theme.space8
                anchors.verticalCenter: title.verticalCenter
                visible: row.isProtected || row.isRecent
                outcome: "warning"
                text: row.isProtected ? Tr.t("cache.protected") : Tr.t("cache.recent")
            }
        }
        Label {
            width: parent.width
            text: row.displayPath
            font: Theme.label
            color: Theme.second
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
    Bar {
        id: share
        anchors.right: size.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        width: (parent.width - box.width) / 2
        height: Theme.barHeightThin
        value: row.fraction
        Accessible.ignored: true
    }
    Label {
        id: size
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.sizeWidth
        text: row.sizeText
        horizontalAlignment: Text.AlignRight
        Accessible.ignored: true
    }
}

import QtQuick
import Varnholt

// One thing that a sync does, and that it has been done.
TableRow {
    id: row

    required property string kind
    required property string kindTitle
    required property string path
    required property string sizeText
    required property bool isDone
    property SyncKinds marks: SyncKinds {}

    implicitHeight: Theme.rowHeight
    name: [kindTitle, path, sizeText, isDone ? Tr.t("sync-page.done") : ""].filter(part => part !== "").join(", ")

    Icon {
        id: shape
        anchors.verticalCenter: parent.verticalCenter
        size: Theme.space12 + 2
        name: row.isDone ? "checkmark" : row.marks.icon(row.kind)
        color: row.isDone ? Theme.good : row.marks.color(row.kind)
    }
    Label {
        anchors.left: shape.right
        anchors.leftMargin: Theme.space12
        anchors.right: what.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        text: row.path
        color: row.isDone ? Theme.second : Theme.text
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Label {
        id: what
        anchors.right: size.left
        anchors.rightMargin: Theme.space12
        anchors.verticalCenter: parent.verticalCenter
        visible: row.width > Theme.textWidth
        width: visible ? implicitWidth : 0
        text: row.kindTitle
        color: Theme.second
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

import QtQuick
import QtQuick.Templates as T
import Varnholt

// Everything that goes, by name, before it goes.
ConfirmSheet {
    id: sheet

    required property var junk

    visible: junk.stage === "review"
    forGood: junk.method === "permanent"
    title: forGood ? Tr.t("cache.review.title.permanent", {count: junk.selectedCount, size: junk.selectedText})
                   : Tr.t("cache.review.title.trash", {count: junk.selectedCount, size: junk.selectedText})
    text: forGood ? Tr.t("cache.review.text.permanent") : Tr.t("cache.review.text.trash")
    confirmText: forGood ? Tr.t("cache.method.permanent") : Tr.t("cache.review.confirm.trash")
    onConfirmed: junk.start()
    onCancelled: junk.back()

    ListTable {
        width: parent.width
        height: Math.min(Math.max(1, count) * Theme.rowHeightTwo + 2 * Theme.space4, 6.5 * Theme.rowHeightTwo)
        name: sheet.title
        model: sheet.visible ? sheet.junk.selectedItems : []
        delegate: TableRow {
            id: row
            required property var modelData

            name: modelData.name + ", " + modelData.sizeText

            Label {
                id: title
                anchors.left: parent.left
                anchors.right: size.left
                anchors.rightMargin: Theme.space12
                y: Theme.space4 + 1
                text: row.modelData.name
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            Label {
                anchors.top: title.bottom
                anchors.left: title.left
                anchors.right: title.right
                text: row.modelData.displayPath
                font: Theme.label
                color: Theme.second
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            Label {
                id: size
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: row.modelData.sizeText
                horizontalAlignment: Text.AlignRight
                Accessible.ignored: true
            }
        }
    }
}

import QtQuick
import Varnholt

// What Optimize would do: looked at, nothing touched.
ConfirmSheet {
    id: sheet

    required property var optimize

    signal helperWanted

    title: Tr.t("home.optimize.check.title")
    text: Tr.t("home.optimize.check.text")
    confirmText: Tr.t("home.optimize")
    cancelText: Tr.t("shell.close")
    canConfirm: !optimize.isChecking
    onAboutToShow: optimize.check()
    onCancelled: {
        optimize.stopCheck();
        close();
    }
    onConfirmed: {
        close();
        optimize.run();
    }

    Column {
        width: parent.width
        spacing: Theme.space12

        ListTable {
            id: table
            width: parent.width
            height: 5.5 * Theme.rowHeightTwo + 2 * Theme.space4
            name: sheet.title
            model: sheet.visible && !sheet.optimize.isChecking ? sheet.optimize.checks : []
            delegate: TableRow {
                id: row
                required property var modelData

                name: modelData.title + ", " + modelData.detail
                implicitHeight: Math.max(Theme.rowHeightTwo, words.implicitHeight + 2 * Theme.space8)

                Icon {
                    id: shape
                    anchors.verticalCenter: parent.verticalCenter
                    name: row.modelData.removes ? "trash" : row.modelData.icon
                    color: row.modelData.removes ? Theme.accent : Theme.second
                }
                Column {
                    id: words
                    anchors.left: shape.right
                    anchors.leftMargin: Theme.space12
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter

                    Label {
                        width: parent.width
                        text: row.modelData.title
                        font: Theme.medium
                        wrapMode: Text.Wrap
                        Accessible.ignored: true
                    }
                    Label {
                        width: parent.width
                        visible: text !== ""
                        text: row.modelData.detail
                        color: Theme.second
                        wrapMode: Text.Wrap
                        Accessible.ignored: true
                    }
                }
            }

            Column {
                anchors.centerIn: parent
                width: parent.width / 2
                visible: sheet.optimize.isChecking
                spacing: Theme.space12

                Label {
                    width: parent.width
                    text: Tr.t("home.optimize.checking")
                    color: Theme.second
                    horizontalAlignment: Text.AlignHCenter
                }
                Bar {
                    width: parent.width
                    value: -1
                    name: Tr.t("home.optimize.checking")
                }
            }
        }
        OptimizeHelperLine {
            width: parent.width
            shown: sheet.optimize.needsHelper
            onHelperWanted: {
                sheet.cancelled();
                sheet.helperWanted();
            }
        }
    }
}

import QtQuick
import Varnholt

// What the last run did, step by step, and the way back.
ConfirmSheet {
    id: sheet

    required property var optimize
    readonly property bool canUndo: optimize.canUndo || optimize.isUndoing
    // The button stays once it was there, so that nothing moves when all is put back.
    property bool offersUndo

    onCanUndoChanged: offersUndo = offersUndo || canUndo
    onAboutToShow: offersUndo = canUndo

    title: Tr.t("home.optimize.last.title", {when: optimize.lastText})
    text: optimize.lastSummary
    confirmText: Tr.t("shell.close")
    cancelText: ""
    onCancelled: close()
    onConfirmed: close()

    Column {
        width: parent.width
        spacing: Theme.space12

        ListTable {
            width: parent.width
            height: Math.min(list.contentHeight + 3 * Theme.space4, 7 * Theme.rowHeightTwo)
            visible: sheet.optimize.hasResult
            name: sheet.title
            model: sheet.visible && sheet.optimize.hasResult ? sheet.optimize.steps : []
            delegate: TableRow {
                id: row
                required property var modelData

                name: [modelData.name, modelData.stateText, modelData.text, modelData.durationText]
                    .concat(modelData.details).filter(text => text !== "").join(", ")
                implicitHeight: Math.max(Theme.rowHeightTwo, words.implicitHeight + 2 * Theme.space8)

                Icon {
                    id: shape
                    y: Theme.space8 + 2
                    size: Theme.space12
                    name: Theme.outcomeIcon(row.modelData.outcome)
                    color: Theme.outcomeColor(row.modelData.outcome)
                }
                Column {
                    id: words
                    anchors.left: shape.right
                    anchors.leftMargin: Theme.space12
                    anchors.right: figures.left
                    anchors.rightMargin: Theme.space12
                    y: Theme.space8
                    spacing: 2

                    Label {
                        width: parent.width
                        text: row.modelData.name
                        font: Theme.medium
                        wrapMode: Text.Wrap
                        Accessible.ignored: true
                    }
                    Repeater {
                        model: [row.modelData.text].concat(row.modelData.details).filter(text => text !== "")

                        Label {
                            required property string modelData

                            width: words.width
                            text: modelData
                            color: Theme.second
                            wrapMode: Text.Wrap
                            Accessible.ignored: true
                        }
                    }
                }
                Column {
                    id: figures
                    anchors.right: parent.right
                    y: Theme.space8

                    Label {
                        anchors.right: parent.right
                        text: row.modelData.stateText
                        Accessible.ignored: true
                    }
                    Label {
                        anchors.right: parent.right
                        visible: text !== ""
                        text: row.modelData.durationText
                        color: Theme.second
                        Accessible.ignored: true
                    }
                }
            }
        }
        Button {
            visible: sheet.offersUndo
            enabled: sheet.optimize.canUndo
            iconName: "arrow.uturn.backward"
            text: Tr.t("activity.undo")
            onClicked: {
                sheet.focusFirst();
                sheet.optimize.undo();
            }
        }
    }
}

import QtQuick
import QtQuick.Templates as T
import Varnholt

// Asks before something is done. Escape cancels; the keyboard stays inside; where something goes for good,
// the safe button has the focus.
T.Popup {
    id: sheet

    property string title
    property string text
    property string confirmText
    property string cancelText: Tr.t("shell.cancel")
    property bool forGood: false
    property bool canConfirm: true
    // What has the keyboard first in a sheet that is a form; Return then confirms from any of its fields.
    property Item firstField
    default property alias body: middle.data

    signal confirmed
    signal cancelled

    function focusFirst() {
        const safe = forGood || !canConfirm;
        (firstField ? firstField : safe ? cancelButton : confirmButton).forceActiveFocus(Qt.TabFocusReason);
    }

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(Theme.sheetWidth, (parent ? parent.width : Theme.sheetWidth) - 2 * Theme.space32)
    implicitHeight: implicitContentHeight + 2 * padding
    padding: Theme.space24
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    onOpened: focusFirst()

    T.Overlay.modal: Rectangle { color: Theme.dim }
    background: FloatingSurface {}

    contentItem: FocusScope {
        implicitHeight: column.implicitHeight
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title
        Accessible.description: sheet.text
        Keys.onEscapePressed: sheet.cancelled()
        Keys.onReturnPressed: event => {
            event.accepted = sheet.firstField !== null && sheet.canConfirm;
            if (event.accepted)
                sheet.confirmed();
        }

        Column {
            id: column
            width: parent.width
            spacing: Theme.space12

            Label {
                width: parent.width
                text: sheet.title
                font: Theme.name
                wrapMode: Text.Wrap
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: sheet.text
                color: Theme.second
                wrapMode: Text.Wrap
                lineHeight: 1.3
            }
            Item {
                id: middle
                width: parent.width
                implicitHeight: childrenRect.height
                visible: children.length > 0
            }
            Item {
                width: parent.width
                height: cancelButton.height + Theme.space4

                Button {
                    id: cancelButton
                    anchors.right: confirmButton.left
                    anchors.rightMargin: Theme.space8
                    anchors.bottom: parent.bottom
                    visible: text !== ""
                    text: sheet.cancelText
                    onClicked: sheet.cancelled()
                }
                Button {
                    id: confirmButton
                    anchors.right: parent.right
                    anchors.bottom: parent.bottom
                    kind: sheet.forGood ? "danger" : "main"
                    enabled: sheet.canConfirm
                    text: sheet.confirmText
                    onClicked: sheet.confirmed()
                }
            }
        }
    }
}

import QtQuick
import QtQuick.Templates as T
import Varnholt

// What its parent is for and the keys that do the same, shown beside it after a moment. Made only when it is wanted.
Loader {
    id: tip

    property bool wanted: false
    property string text
    property string shortcut

    active: wanted && text !== ""
    sourceComponent: T.ToolTip {
        parent: tip.parent
        visible: true
        delay: Theme.tooltipDelay
        x: Math.round((parent.width - width) / 2)
        y: parent.height + Theme.space8
        implicitWidth: Math.min(row.implicitWidth, Theme.textWidth) + leftPadding + rightPadding
        implicitHeight: row.implicitHeight + topPadding + bottomPadding
        horizontalPadding: Theme.space8
        verticalPadding: Theme.space4 + 1
        margins: Theme.space8
        closePolicy: T.Popup.NoAutoClose
        background: FloatingSurface { radius: Theme.radiusField }
        contentItem: Item {
            Row {
                id: row
                spacing: Theme.space12

                Label {
                    width: Math.min(implicitWidth, Theme.textWidth)
                    text: tip.text
                    font: Theme.label
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }
                Label {
                    visible: text !== ""
                    text: tip.shortcut === "" ? "" : App.keyText(tip.shortcut)
                    font: Theme.label
                    color: Theme.second
                    Accessible.ignored: true
                }
            }
        }
    }
}

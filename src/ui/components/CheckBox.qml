import QtQuick
import QtQuick.Templates as T
import Varnholt

T.CheckBox {
    id: control

    implicitWidth: Math.max(indicator.width, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(indicator.height, implicitContentHeight)
    font: Theme.body
    focusPolicy: Qt.StrongFocus
    Accessible.name: text

    indicator: CheckMark {
        y: (control.height - height) / 2
        state: control.checkState === Qt.Checked ? "all" : control.checkState === Qt.PartiallyChecked ? "some" : "none"
        opacity: control.enabled ? 1 : 0.5

        FocusRing {
            shown: control.visualFocus
            radius: Theme.radiusSmall + 3
        }
    }

    contentItem: Label {
        leftPadding: control.text === "" ? 0 : control.indicator.width + Theme.space12
        text: control.text
        font: control.font
        color: control.enabled ? Theme.text : Theme.disabled
        Accessible.ignored: true
    }
}

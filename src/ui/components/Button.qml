import QtQuick
import QtQuick.Templates as T
import Varnholt

T.Button {
    id: control

    // "plain", "main" (one on a page), "quiet" (no frame) or "danger" (what cannot be brought back).
    property string kind: "plain"
    property string iconName
    // The keys that do the same, such as "Ctrl+N"; they work while the button does and are shown to who points at it.
    property string shortcut
    readonly property bool filled: kind === "main" || kind === "danger"
    readonly property color ink: !enabled ? Theme.disabled
        : kind === "main" ? Theme.accentInk
        : kind === "danger" ? Theme.badInk
        : kind === "quiet" ? Theme.accent : Theme.text

    function fill(): color {
        if (!enabled)
            return kind === "quiet" ? "transparent" : Theme.sunken;
        switch (kind) {
        case "main": return down ? Theme.accentPressed : hovered ? Theme.accentHover : Theme.accent;
        case "danger": return down || hovered ? Theme.badHover : Theme.bad;
        case "quiet": return down || hovered ? Theme.sunken : "transparent";
        default: return down ? Theme.sunken : hovered ? Theme.hover : Theme.surface;
        }
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.fieldHeight
    leftPadding: kind === "quiet" ? Theme.space8 : Theme.space16 - 1
    rightPadding: leftPadding
    font: Theme.medium
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    Shortcut {
        enabled: control.shortcut !== "" && control.enabled && control.visible
        sequence: control.shortcut
        onActivated: control.clicked()
    }
    Tooltip {
        wanted: control.shortcut !== "" && (control.hovered && !control.down || control.visualFocus)
        text: control.text
        shortcut: control.shortcut
    }

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.space8

            Icon {
                visible: control.iconName !== ""
                anchors.verticalCenter: parent.verticalCenter
                name: control.iconName
                color: control.ink
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: control.text
                font: control.font
                color: control.ink
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        radius: Theme.radiusButton
        color: control.fill()
        border.width: control.filled || control.kind === "quiet" ? 0 : Theme.hairline
        border.color: Theme.line

        FocusRing { shown: control.visualFocus }
    }
}

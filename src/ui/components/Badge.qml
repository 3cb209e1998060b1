import QtQuick
import Varnholt

// A word on a tint; an outcome also carries its shape, so that colour is never alone.
Rectangle {
    id: badge

    property string text
    property string outcome
    property bool running: false

    readonly property color ink: running ? Theme.accent : Theme.outcomeColor(outcome)

    implicitWidth: row.implicitWidth + 2 * Theme.space8
    implicitHeight: row.implicitHeight + Theme.space4 + 2
    radius: height / 2
    color: running ? Theme.soft : Theme.outcomeSoft(outcome)

    Row {
        id: row
        anchors.centerIn: parent
        spacing: Theme.space4

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: !badge.running && badge.outcome !== ""
            size: Theme.space12
            name: visible ? Theme.outcomeIcon(badge.outcome) : ""
            color: badge.ink
        }
        Label {
            text: badge.text
            font: Theme.labelMedium
            color: badge.ink
        }
    }
}

import QtQuick
import Varnholt

// One choice of a few: [{value, title}]. Arrow keys move it.
Rectangle {
    id: control

    property var options: []
    property string value
    property string name
    property bool onSidebar: false
    property bool stretch: false
    readonly property real segmentWidth: (width - 2 * pad) / Math.max(1, options.length)
    readonly property int pad: 2

    signal chosen(string value)

    function step(by: int) {
        const at = options.findIndex(option => option.value === value);
        const next = Math.max(0, Math.min(options.length - 1, at + by));
        if (next !== at)
            chosen(options[next].value);
    }

    implicitWidth: row.implicitWidth + 2 * pad
    implicitHeight: Theme.itemHeight
    radius: Theme.radiusButton
    color: onSidebar ? Theme.line : Theme.sunken
    activeFocusOnTab: enabled
    opacity: enabled ? 1 : 0.5
    Accessible.role: Accessible.PageTabList
    Accessible.name: name
    Accessible.focusable: true
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)

    Row {
        id: row
        anchors.fill: parent
        anchors.margins: control.pad

        Repeater {
            model: control.options

            Rectangle {
                id: segment
                required property var modelData
                readonly property bool current: modelData.value === control.value

                implicitWidth: word.implicitWidth + 2 * Theme.space12
                width: control.stretch ? control.segmentWidth : implicitWidth
                height: row.height
                radius: Theme.radiusField
                color: current ? Theme.surface : "transparent"
                border.width: current ? Theme.hairline : 0
                border.color: Theme.line
                Accessible.role: Accessible.PageTab
                Accessible.name: modelData.title
                Accessible.selected: current
                Accessible.onPressAction: control.chosen(modelData.value)

                Label {
                    id: word
                    anchors.centerIn: parent
                    width: control.stretch ? Math.min(implicitWidth, parent.width - Theme.space4) : implicitWidth
                    text: segment.modelData.title
                    font: Theme.segment
                    color: segment.current || mouse.containsMouse ? Theme.text : Theme.second
                    Accessible.ignored: true
                }
                MouseArea {
                    id: mouse
                    anchors.fill: parent
                    hoverEnabled: true
                    onClicked: control.chosen(segment.modelData.value)
                }
            }
        }
    }

    FocusRing { shown: control.activeFocus }
}

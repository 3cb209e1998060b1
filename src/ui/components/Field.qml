import QtQuick
import QtQuick.Templates as T
import Varnholt

// A line of text to type into.
T.TextField {
    id: control

    property string name: placeholderText

    implicitWidth: Theme.fieldWidth
    implicitHeight: Theme.fieldHeight
    leftPadding: Theme.space8 + 2
    rightPadding: Theme.space8 + 2
    verticalAlignment: TextInput.AlignVCenter
    font: Theme.body
    color: enabled ? Theme.text : Theme.disabled
    placeholderTextColor: Theme.third
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    selectByMouse: true
    Accessible.name: name

    Label {
        anchors.fill: parent
        leftPadding: control.leftPadding
        rightPadding: control.rightPadding
        text: control.placeholderText
        color: control.placeholderTextColor
        visible: control.length === 0 && control.preeditText === ""
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.radiusField
        color: Theme.dark ? Theme.background : Theme.surface
        border.width: control.activeFocus ? Theme.ring : Theme.hairline
        border.color: control.activeFocus ? Theme.accent : Theme.line
    }
}

import QtQuick
import Varnholt

// A label and its value on one line; a long value takes as many lines as it needs.
Item {
    id: fact

    property string label
    property string value
    property int labelWidth: Theme.fieldWidthShort

    implicitHeight: Math.max(name.implicitHeight, worth.implicitHeight) + Theme.space8
    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value

    Label {
        id: name
        y: Theme.space4
        width: fact.labelWidth
        text: fact.label
        color: Theme.second
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    Label {
        id: worth
        y: Theme.space4
        anchors.left: name.right
        anchors.leftMargin: Theme.space12
        anchors.right: parent.right
        text: fact.value
        wrapMode: Text.WrapAnywhere
        Accessible.ignored: true
    }
}

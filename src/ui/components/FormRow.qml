import QtQuick
import Varnholt

// A field with its name above it.
Column {
    id: row

    property string title
    default property alias field: place.data

    width: parent ? parent.width : 0
    spacing: Theme.space4

    Label {
        width: parent.width
        text: row.title
        font: Theme.label
        color: Theme.second
        Accessible.ignored: true
    }
    Item {
        id: place
        width: parent.width
        implicitHeight: childrenRect.height
    }
}

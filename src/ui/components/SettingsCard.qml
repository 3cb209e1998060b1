import QtQuick
import Varnholt

// A group of settings under its name.
Column {
    id: group

    property string title
    default property alias rows: column.data

    spacing: Theme.space8

    Label {
        text: group.title
        font: Theme.label
        color: Theme.third
        Accessible.role: Accessible.Heading
    }
    Card {
        width: parent.width
        implicitHeight: column.implicitHeight + 2 * padding

        Column {
            id: column
            width: parent.width
            spacing: Theme.space16
        }
    }
}

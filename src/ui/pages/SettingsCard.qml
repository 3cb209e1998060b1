import QtQuick
import Varnholt

// A group of settings under its name.
Column {
    id: group

    property string title
    default property alias rows: column.data

    spacing: Theme.space8

    Label {
        leftPadding: Theme.space4
        text: group.title
        font: Theme.label
        color: Theme.second
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

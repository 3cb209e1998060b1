import QtQuick
import Varnholt

TableRow {
    id: row

    required property string displayPath
    required property string place
    required property string sizeText
    required property string stateTitle

    name: [displayPath, place, stateTitle, sizeText].filter(text => text !== "").join(", ")

    Label {
        id: path
        y: Theme.space4 + 1
        width: parent.width
        text: row.displayPath
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Label {
        anchors.top: path.bottom
        anchors.left: parent.left
        anchors.right: size.left
        anchors.rightMargin: Theme.space8
        text: [row.stateTitle, row.place].filter(text => text !== "").join(" · ")
        font: Theme.label
        color: Theme.second
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Label {
        id: size
        anchors.right: parent.right
        anchors.top: path.bottom
        text: row.sizeText
        font: Theme.label
        color: Theme.second
        Accessible.ignored: true
    }
}

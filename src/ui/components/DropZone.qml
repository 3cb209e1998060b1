import QtQuick
import Varnholt

// Where files and folders can be dropped.
Rectangle {
    id: zone

    property string text
    readonly property bool over: area.containsDrag

    signal dropped(var paths)

    implicitHeight: Theme.tileHeight
    radius: Theme.radiusCard
    color: over ? Theme.soft : "transparent"
    border.width: over ? Theme.ring : Theme.hairline
    border.color: over ? Theme.accent : Theme.control
    Accessible.role: Accessible.Pane
    Accessible.name: text

    Label {
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width - 2 * Theme.space16)
        text: zone.text
        color: zone.over ? Theme.accent : Theme.second
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }
    DropArea {
        id: area
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: drop => zone.dropped(drop.urls.map(url => App.localPath(url)))
    }
}

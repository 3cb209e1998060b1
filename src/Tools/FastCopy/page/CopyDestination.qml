import QtQuick
import Varnholt

// One place: its name, how full it is, and what the copy adds to that.
Rectangle {
    id: box

    required property var place
    readonly property bool isFaulty: (place.fault ?? "") !== ""
    readonly property bool isTight: place.isTight ?? false
    readonly property real used: place.used ?? -1
    readonly property color tone: isFaulty ? Theme.bad : isTight ? Theme.warning : Theme.second

    signal takenOut
    signal makingWanted
    signal dropped(var paths)

    implicitHeight: state.y + Math.max(state.height, make.visible ? make.height : 0) + Theme.space8
    radius: Theme.radiusCard
    color: Theme.surface
    border.width: Theme.hairline
    border.color: area.containsDrag ? Theme.accent : isFaulty ? Theme.bad : isTight ? Theme.warning : Theme.line
    Accessible.role: Accessible.Pane
    Accessible.name: [place.name, place.path, isFaulty ? place.fault : place.text].join(", ")

    DropArea {
        id: area
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: drop => box.dropped(drop.urls.map(url => App.localPath(url)))
    }
    Icon {
        id: shape
        x: Theme.space16
        y: Theme.space12
        name: "externaldrive"
        color: Theme.second
    }
    Label {
        id: name
        anchors.left: shape.right
        anchors.leftMargin: Theme.space12
        anchors.verticalCenter: shape.verticalCenter
        width: Math.min(implicitWidth, (out.x - x) * 0.6)
        text: box.place.name ?? ""
        font: Theme.medium
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Label {
        anchors.left: name.right
        anchors.leftMargin: Theme.space8
        anchors.right: out.left
        anchors.rightMargin: Theme.space8
        anchors.baseline: name.baseline
        visible: width > 80 // less of a path says nothing; the name stays
        text: box.place.path ?? ""
        font: Theme.label
        color: Theme.second
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    IconButton {
        id: out
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8
        anchors.verticalCenter: shape.verticalCenter
        iconName: "xmark"
        ink: Theme.second
        text: Tr.t("copy-page.take-out", {name: box.place.name ?? ""})
        onClicked: box.takenOut()
    }

    Rectangle {
        id: room
        anchors.left: name.left
        anchors.right: parent.right
        anchors.rightMargin: Theme.space16
        anchors.top: shape.bottom
        anchors.topMargin: Theme.space8 + 1
        height: Theme.barHeight
        radius: height / 2
        color: Theme.sunken
        visible: box.used >= 0
        clip: true

        Rectangle {
            height: parent.height
            // Little beside a large disk still shows.
            width: Math.min(parent.width, Math.max(parent.width * (box.used + (box.place.need ?? 0)), parent.width * box.used + Theme.space4))
            visible: (box.place.need ?? 0) > 0
            radius: parent.radius
            color: box.isTight ? Theme.warning : Theme.accent
        }
        Rectangle {
            height: parent.height
            width: Math.round(parent.width * box.used)
            radius: parent.radius
            color: Theme.control
        }
    }
    Row {
        id: state
        anchors.left: name.left
        anchors.right: make.visible ? make.left : room.right
        anchors.rightMargin: make.visible ? Theme.space8 : 0
        anchors.top: shape.bottom
        anchors.topMargin: box.used >= 0 ? Theme.space24 - 2 : make.visible ? Theme.space12 + Theme.space4 : Theme.space8
        spacing: Theme.space4

        Icon {
            id: warning
            y: 1
            visible: box.isFaulty || box.isTight
            size: Theme.space12
            name: visible ? "exclamationmark.triangle" : ""
            color: box.tone
        }
        Label {
            width: parent.width - (warning.visible ? warning.width + parent.spacing : 0)
            text: (box.isFaulty ? box.place.fault : box.place.text) ?? ""
            font: Theme.label
            color: box.tone
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
    Button {
        id: make
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8
        y: state.y + (Math.min(state.height, Theme.space16) - height) / 2
        visible: box.place.isMissing ?? false
        kind: "quiet"
        height: Theme.space24
        text: Tr.t("copy-page.make")
        Accessible.description: box.place.path ?? ""
        onClicked: box.makingWanted()
    }
}

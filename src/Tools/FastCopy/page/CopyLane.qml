import QtQuick
import Varnholt

// One place of a copy that runs: how far it is there, and what can be done with it.
Item {
    id: row

    required property var lane
    property bool canSteer: true
    readonly property bool isPaused: lane.state === "paused"
    readonly property real fraction: lane.fraction ?? 0

    signal pauseToggled
    signal removed

    implicitHeight: Theme.rowHeightTwo
    Accessible.role: Accessible.Pane
    Accessible.name: [lane.name, lane.stateTitle, lane.text].filter(text => text).join(", ")

    Label {
        id: name
        x: Theme.space8
        y: Theme.space4
        width: Math.min(implicitWidth, (figures.x - x) * 0.55)
        text: row.lane.name ?? ""
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Label {
        anchors.left: name.right
        anchors.leftMargin: Theme.space8
        anchors.right: figures.left
        anchors.rightMargin: Theme.space8
        anchors.baseline: name.baseline
        visible: width > 80 // less of a path says nothing; the name stays
        text: row.lane.path ?? ""
        font: Theme.label
        color: Theme.second
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Label {
        id: figures
        anchors.right: pause.left
        anchors.rightMargin: Theme.space12
        anchors.baseline: name.baseline
        text: row.lane.state === "runs" ? row.lane.text
            : row.isPaused ? [row.lane.stateTitle, row.lane.text].filter(text => text).join(" · ") : row.lane.stateTitle ?? ""
        color: Theme.second
        Accessible.ignored: true
    }
    Rectangle {
        anchors.left: parent.left
        anchors.right: pause.left
        anchors.rightMargin: Theme.space12
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.space4 + 2
        height: Theme.barHeight
        radius: height / 2
        color: row.lane.state === "verifies" ? Theme.soft : Theme.sunken
        Accessible.role: Accessible.ProgressBar
        Accessible.name: (row.lane.name ?? "") + ", " + Math.floor(row.fraction * 100) + " %"

        Rectangle {
            height: parent.height
            radius: parent.radius
            width: Math.max(row.fraction > 0 ? height : 0, parent.width * Math.min(1, row.fraction))
            color: row.isPaused ? Theme.control : Theme.accent

            Behavior on width { NumberAnimation { duration: Theme.motion } }
        }
    }
    IconButton {
        id: pause
        anchors.right: out.left
        anchors.verticalCenter: parent.verticalCenter
        enabled: row.canSteer && row.lane.state !== "verifies"
        iconName: row.isPaused ? "play" : "pause"
        text: Tr.t(row.isPaused ? "copy-page.lane.resume" : "copy-page.lane.pause", {name: row.lane.name ?? ""})
        onClicked: row.pauseToggled()
    }
    IconButton {
        id: out
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        enabled: row.canSteer
        iconName: "xmark"
        ink: Theme.second
        text: Tr.t("copy-page.lane.remove", {name: row.lane.name ?? ""})
        onClicked: row.removed()
    }
}

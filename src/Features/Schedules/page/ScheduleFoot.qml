import QtQuick
import Varnholt

// What can be done with the task that is chosen.
Item {
    id: foot

    required property var schedules
    readonly property var chosen: schedules.selected
    readonly property bool isChosen: chosen.taskId !== undefined

    signal change
    signal remove

    Label {
        anchors.left: parent.left
        anchors.right: buttons.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        text: foot.isChosen ? foot.chosen.title : Tr.t("schedules.choose")
        font: foot.isChosen ? Theme.strong : Theme.body
        color: foot.isChosen ? Theme.text : Theme.second
        elide: foot.isChosen ? Text.ElideMiddle : Text.ElideRight
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space12

        Button {
            visible: foot.isChosen && !foot.chosen.isFlow
            kind: "quiet"
            text: Tr.t("schedules.remove")
            onClicked: foot.remove()
        }
        Button {
            visible: foot.isChosen
            text: foot.chosen.isFlow ? Tr.t("schedules.open-flow") : Tr.t("schedules.edit")
            onClicked: foot.change()
        }
        Button {
            visible: foot.isChosen
            iconName: foot.chosen.isRunning ? "stop" : "play"
            enabled: foot.chosen.isRunning || foot.schedules.runningTitle === ""
            shortcut: "Ctrl+R"
            text: foot.chosen.isRunning ? Tr.t("shell.stop") : Tr.t("schedules.run-now")
            onClicked: foot.chosen.isRunning ? foot.schedules.stop() : foot.schedules.runNow(foot.chosen.taskId)
        }
    }
}

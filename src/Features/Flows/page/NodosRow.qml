import QtQuick
import Varnholt

TableRow {
    id: row

    required property string flowId
    required property string flowName
    required property string startText
    required property string lastOutcome
    required property string lastTitle
    required property string lastTime
    required property string problemText
    required property string from
    required property bool running

    implicitHeight: Theme.rowHeightTwo + Theme.space4
    name: [flowName, startText, running ? Tr.t("nodes-page.running") : "", problemText, lastTitle, lastTime, from]
        .filter(text => text !== "").join(", ")

    Icon {
        id: shape
        anchors.verticalCenter: parent.verticalCenter
        name: "point.topleft.down.to.point.bottomright"
        color: row.running ? Theme.accent : Theme.second
    }
    Column {
        anchors.left: shape.right
        anchors.leftMargin: Theme.space12
        anchors.right: marks.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        Label {
            width: parent.width
            text: row.flowName
            font: Theme.medium
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: row.from === "" ? row.startText : row.startText + " · " + Tr.t("nodes-page.from", {name: row.from})
            font: Theme.label
            color: Theme.second
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
    Row {
        id: marks
        anchors.right: time.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space8

        Badge {
            visible: row.problemText !== ""
            outcome: "warning"
            text: row.problemText
        }
        Badge {
            visible: row.running
            running: true
            text: Tr.t("nodes-page.running")
        }
        Badge {
            visible: !row.running && row.lastOutcome !== ""
            outcome: row.lastOutcome
            text: row.lastTitle
        }
    }
    Label {
        id: time
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.fieldWidthShort - Theme.space8
        horizontalAlignment: Text.AlignRight
        text: row.lastTime === "" ? Tr.t("nodes-page.never") : row.lastTime
        color: row.lastTime === "" ? Theme.second : Theme.text
        Accessible.ignored: true
    }
}

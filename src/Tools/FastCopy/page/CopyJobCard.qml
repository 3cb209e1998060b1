import QtQuick
import Varnholt

// One copy: while it runs, the picture of it with a lane for each place; before and after, a line.
Card {
    id: card

    required property var copying
    required property string jobId
    required property string title
    required property string from
    required property string detail
    required property string icon
    required property string stateTitle
    required property string outcome
    required property bool isActive
    required property bool isOver
    required property bool isStopping
    required property string rateText
    required property string leftText
    required property string currentFile
    required property string line
    required property var lanes

    signal reportWanted

    function takeFocus(reason: int) { (isActive ? stop : isOver ? report : out).forceActiveFocus(reason); }

    // A button that is hidden would keep the keyboard.
    onIsActiveChanged: {
        const held = [stop, report, out].find(button => button.activeFocus);
        if (held)
            Qt.callLater(takeFocus, held.focusReason);
    }
    padding: Theme.space16 - 2
    implicitHeight: (isActive ? running.height : brief.height) + 2 * padding
    Accessible.role: Accessible.Pane
    Accessible.name: title + ", " + stateTitle

    // What is copied at the left, a lane to each place at the right.
    Item {
        id: running
        visible: card.isActive
        width: parent.width
        height: picture.y + picture.height + file.height + Theme.space8

        Label {
            id: heading
            anchors.verticalCenter: stop.verticalCenter
            width: Math.min(implicitWidth, figures.x - badge.width - Theme.space24)
            text: card.title
            font: Theme.medium
            elide: Text.ElideMiddle
        }
        Badge {
            id: badge
            anchors.left: heading.right
            anchors.leftMargin: Theme.space12
            anchors.verticalCenter: stop.verticalCenter
            running: true
            text: card.stateTitle
        }
        Label {
            id: figures
            anchors.right: stop.left
            anchors.rightMargin: Theme.space16
            anchors.verticalCenter: stop.verticalCenter
            text: [card.rateText, card.leftText].filter(text => text !== "").join(" · ")
        }
        Button {
            id: stop
            anchors.right: parent.right
            text: Tr.t("shell.stop")
            iconName: "stop"
            enabled: !card.isStopping
            Accessible.name: Tr.t("copy-page.stop.of", {title: card.title})
            onClicked: card.copying.stop(card.jobId)
        }

        Item {
            id: picture
            anchors.top: stop.bottom
            anchors.topMargin: Theme.space12
            width: parent.width
            height: Math.max(box.height, lanesColumn.height)

            Rectangle {
                id: box
                anchors.verticalCenter: parent.verticalCenter
                width: Math.round(parent.width * 0.26)
                height: names.implicitHeight + 2 * Theme.space12
                radius: Theme.radiusCard
                color: Theme.soft

                Column {
                    id: names
                    anchors.left: parent.left
                    anchors.right: parent.right
                    anchors.margins: Theme.space12
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 2

                    Label {
                        width: parent.width
                        text: card.from
                        elide: Text.ElideMiddle
                        Accessible.ignored: true
                    }
                    Label {
                        width: parent.width
                        text: card.detail
                        font: Theme.label
                        color: Theme.second
                        wrapMode: Text.Wrap
                    }
                }
            }
            Repeater {
                model: card.isActive ? card.lanes.length : 0

                CopyLine {
                    required property int index
                    readonly property var lane: card.lanes[index] ?? ({})

                    x: box.width
                    width: lanesColumn.x - x + 1
                    height: parent.height
                    startY: box.y + box.height / 2
                    endY: lanesColumn.y + index * (Theme.rowHeightTwo + lanesColumn.spacing) + Theme.rowHeightTwo - Theme.space4 - 2 - Theme.barHeight / 2
                    flows: (lane.fraction ?? 0) > 0 && lane.state !== "paused"
                }
            }
            Column {
                id: lanesColumn
                anchors.verticalCenter: parent.verticalCenter
                x: box.width + Theme.space32 + Theme.space24
                width: parent.width - x
                spacing: Theme.space4

                Repeater {
                    model: card.isActive ? card.lanes.length : 0

                    CopyLane {
                        required property int index

                        width: lanesColumn.width
                        lane: card.lanes[index] ?? ({})
                        canSteer: !card.isStopping
                        onPauseToggled: card.copying.togglePause(card.jobId, lane.index)
                        onRemoved: card.copying.remove(card.jobId, lane.index)
                    }
                }
            }
        }
        Label {
            id: file
            anchors.top: picture.bottom
            anchors.topMargin: Theme.space8
            width: parent.width
            height: Theme.space16
            text: card.currentFile
            font: Theme.label
            color: Theme.second
            elide: Text.ElideMiddle
        }
    }

    Item {
        id: brief
        visible: !card.isActive
        width: parent.width
        height: Math.max(words.implicitHeight, Theme.itemHeight)

        Icon {
            id: shape
            y: 2
            name: card.icon
            color: Theme.second
        }
        Column {
            id: words
            anchors.left: shape.right
            anchors.leftMargin: Theme.space12
            anchors.right: buttons.left
            anchors.rightMargin: Theme.space16
            spacing: 2

            Label {
                width: parent.width
                text: card.title
                font: Theme.medium
                elide: Text.ElideMiddle
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: card.line === "" ? card.detail : card.line
                font: Theme.label
                color: Theme.second
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
            }
        }
        Row {
            id: buttons
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.space8

            Badge {
                anchors.verticalCenter: parent.verticalCenter
                outcome: card.outcome
                text: card.stateTitle
            }
            Button {
                id: report
                visible: card.isOver
                text: Tr.t("copy-page.report")
                Accessible.name: Tr.t("copy-page.report.of", {title: card.title})
                onClicked: card.reportWanted()
            }
            IconButton {
                id: out
                anchors.verticalCenter: parent.verticalCenter
                iconName: "xmark"
                ink: Theme.second
                text: Tr.t("copy-page.take-off", {title: card.title})
                onClicked: card.copying.takeOff(card.jobId)
            }
        }
    }
}

import QtQuick
import Varnholt

// What the last task came to and what it printed.
Card {
    id: card

    required property var maintenance
    readonly property var run: maintenance.lastRun
    readonly property bool isRunning: maintenance.running !== ""
    readonly property bool isKnown: run.summary !== undefined
    readonly property bool isEmpty: !isKnown && !isRunning && maintenance.notice === ""

    Label {
        anchors.centerIn: parent
        width: Math.min(implicitWidth, parent.width)
        visible: card.isEmpty
        text: Tr.t("maintenance-page.empty")
        color: Theme.second
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
    }
    ErrorNote {
        id: note
        width: parent.width
        visible: card.maintenance.notice !== ""
        title: Tr.t("maintenance-page.notice")
        text: card.maintenance.notice
    }
    Item {
        id: head
        width: parent.width
        height: Theme.space24
        visible: !note.visible && (card.isKnown || card.isRunning)

        Label {
            id: title
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, parent.width - badge.width - time.width - 2 * Theme.space12)
            text: card.isRunning ? card.maintenance.runningTitle : card.run.taskTitle ?? ""
            font: Theme.strong
            Accessible.role: Accessible.Heading
        }
        Badge {
            id: badge
            anchors.left: title.right
            anchors.leftMargin: title.text === "" ? 0 : Theme.space12
            anchors.verticalCenter: parent.verticalCenter
            running: card.isRunning
            outcome: card.isRunning ? "" : card.run.outcome ?? ""
            text: !card.isRunning ? card.run.outcomeTitle ?? ""
                : card.maintenance.isStopping ? Tr.t("maintenance-page.stopping") : Tr.t("maintenance-page.running")
        }
        Label {
            id: time
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: card.isRunning ? card.maintenance.elapsedText : card.run.timeText ?? ""
            color: Theme.second
        }
    }
    Label {
        id: summary
        anchors.top: head.bottom
        anchors.topMargin: Theme.space4
        width: parent.width
        visible: head.visible && text !== ""
        text: card.isRunning ? "" : card.run.summary ?? ""
        wrapMode: Text.Wrap
    }
    Bar {
        anchors.top: head.bottom
        anchors.topMargin: Theme.space8
        width: parent.width
        visible: head.visible && card.isRunning
        value: -1
        name: title.text
    }
    // Of a run from before this window only its summary is known.
    Label {
        anchors.top: summary.bottom
        anchors.topMargin: Theme.space8
        width: parent.width
        visible: box.isKnown && !box.visible
        text: Tr.t("maintenance-page.log.none")
        color: Theme.second
    }
    TextBox {
        id: box
        readonly property bool isKnown: head.visible && !card.isRunning && card.run.taskTitle !== ""

        anchors.top: summary.bottom
        anchors.topMargin: Theme.space8
        anchors.bottom: parent.bottom
        width: parent.width
        visible: isKnown && text !== ""
        readOnly: true
        code: true
        name: Tr.t("maintenance-page.log")
        text: card.maintenance.log
    }
}

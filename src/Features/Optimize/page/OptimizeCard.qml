import QtQuick
import Varnholt

// The one-button run: what it does, how far it is, what it came to.
Card {
    id: card

    required property Page page
    readonly property var optimize: App.model("optimize")
    readonly property bool settled: !optimize.isChecking && !optimize.isRunning
    readonly property var looks: ({
        profile: () => profile.open(),
        check: () => checks.open(),
        last: () => optimize.lastText !== "" && (result.open(), true)
    })
    // One line of text, or two where there is little room.
    readonly property int lines: width < Theme.textWidth ? 2 : 1

    implicitHeight: Theme.topCardHeight + (lines - 1) * words.lineHeight + buttons.height - Theme.fieldHeight
    Accessible.role: Accessible.Pane
    Accessible.name: Tr.t("home.optimize")

    Label {
        id: title
        height: Theme.space16 + Theme.space4
        text: Tr.t("home.optimize")
        font: Theme.strong
        Accessible.role: Accessible.Heading
    }
    Badge {
        anchors.right: parent.right
        anchors.verticalCenter: title.verticalCenter
        visible: text !== ""
        running: card.optimize.isRunning
        outcome: running ? "" : card.optimize.lastOutcome
        text: !running ? card.optimize.lastText
            : card.optimize.isStopping ? Tr.t("home.optimize.stopping") : Tr.t("home.optimize.running")
    }

    Label {
        id: words
        readonly property int lineHeight: Theme.space16

        anchors.top: title.bottom
        anchors.topMargin: Theme.space8
        anchors.left: parent.left
        anchors.right: last.visible ? last.left : parent.right
        anchors.rightMargin: last.visible ? Theme.space12 : 0
        height: card.lines * lineHeight
        verticalAlignment: Text.AlignTop
        text: card.optimize.line
        color: Theme.second
        wrapMode: card.lines > 1 ? Text.Wrap : Text.NoWrap
        maximumLineCount: card.lines
    }
    Button {
        id: last
        anchors.right: parent.right
        anchors.rightMargin: -Theme.space8
        y: words.y - (height - words.lineHeight) / 2
        visible: card.optimize.lastText !== "" && !card.optimize.isRunning
        kind: "quiet"
        height: Theme.space24
        text: Tr.t("home.optimize.last")
        onClicked: result.open()
    }
    ProgressBelt {
        anchors.top: words.bottom
        anchors.topMargin: Theme.space12 - 1
        width: parent.width
        steps: card.optimize.steps
    }

    // Wraps where the words of a language are long.
    Flow {
        id: buttons
        anchors.bottom: parent.bottom
        width: parent.width
        spacing: Theme.space12

        Button {
            // Start and stop in one place, so that the keyboard stays where it is.
            property real most: 0

            onImplicitWidthChanged: most = Math.max(most, implicitWidth)
            width: most
            kind: card.optimize.isRunning ? "plain" : "main"
            iconName: card.optimize.isRunning ? "stop" : "bolt"
            text: card.optimize.isRunning ? Tr.t("shell.stop") : Tr.t("home.optimize")
            // Also while it stops: a button that is switched off loses the keyboard's ring.
            enabled: card.optimize.isRunning || card.optimize.hasSteps
            onClicked: card.optimize.isRunning ? card.optimize.cancel() : card.optimize.run()
        }
        Button {
            text: Tr.t("home.optimize.check")
            enabled: !card.optimize.isRunning && card.optimize.hasSteps
            onClicked: checks.open()
        }
        IconButton {
            height: Theme.fieldHeight
            iconName: "gearshape"
            text: Tr.t("home.optimize.profile")
            enabled: !card.optimize.isRunning
            onClicked: profile.open()
        }
    }
    Label {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: Theme.fieldHeight
        visible: implicitWidth < parent.width - buttons.childrenRect.width - Theme.space12
        text: card.optimize.isRunning ? card.optimize.elapsedText : card.optimize.freedText
        color: Theme.second
        horizontalAlignment: Text.AlignRight
    }

    OptimizeProfileSheet {
        id: profile
        optimize: card.optimize
    }
    OptimizeCheckSheet {
        id: checks
        optimize: card.optimize
        onHelperWanted: card.page.navigate("helper")
    }
    OptimizeResultSheet {
        id: result
        optimize: card.optimize
    }
    Connections {
        target: card.optimize
        function onSaid(text: string) { card.page.said(text); }
    }
}

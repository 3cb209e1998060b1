import QtQuick
import Varnholt

// What can be done with the flow that is chosen.
Item {
    id: foot

    required property var flows
    required property string flowId
    property var facts: ({})
    readonly property bool known: facts.name !== undefined

    signal opened
    signal run
    signal copied(string id)
    signal renaming
    signal removing
    signal exporting
    // All that can be done, as a menu at the button.
    signal moreWanted(Item button)

    function read() { facts = flows.facts(flowId); }

    onFlowIdChanged: read()
    Component.onCompleted: read()
    Connections {
        target: foot.flows
        function onChanged() { foot.read(); }
    }

    Label {
        anchors.left: parent.left
        anchors.right: buttons.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        text: foot.known ? foot.facts.name : Tr.t("nodes-page.choose")
        font: foot.known ? Theme.strong : Theme.body
        color: foot.known ? Theme.text : Theme.second
        elide: foot.known ? Text.ElideMiddle : Text.ElideNone
        wrapMode: foot.known ? Text.NoWrap : Text.Wrap
    }
    Row {
        id: buttons
        visible: foot.known
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space8

        Row {
            id: all
            spacing: buttons.spacing
            visible: foot.width > Theme.wideWidth

            Button {
                kind: "quiet"
                text: Tr.t("nodes-page.remove")
                onClicked: foot.removing()
            }
            Button {
                kind: "quiet"
                text: Tr.t("nodes-page.export")
                onClicked: foot.exporting()
            }
            Button {
                kind: "quiet"
                visible: foot.known && foot.facts.from === ""
                text: Tr.t("nodes-page.rename.do")
                onClicked: foot.renaming()
            }
            Button {
                kind: "quiet"
                text: Tr.t("nodes-page.duplicate")
                onClicked: foot.copied(foot.flows.duplicate(foot.flowId))
            }
        }
        IconButton {
            visible: !all.visible
            anchors.verticalCenter: parent.verticalCenter
            iconName: "ellipsis"
            text: Tr.t("nodes-page.more")
            onClicked: foot.moreWanted(this)
        }
        Button {
            iconName: foot.facts.running ? "stop" : "play"
            text: foot.facts.running ? Tr.t("shell.stop") : Tr.t("nodes-page.run")
            shortcut: foot.facts.running ? "Ctrl+." : "Ctrl+R"
            onClicked: foot.facts.running ? foot.flows.stop(foot.flowId) : foot.run()
        }
        Button {
            text: Tr.t("nodes-page.open")
            onClicked: foot.opened()
        }
    }
}

import QtQuick
import Varnholt

// How far the root helper is set up, what it is for, and the next step.
Page {
    id: page

    readonly property var helper: App.model("helper")
    property string stage: helper.stage
    readonly property bool isThere: ["working", "old", "silent"].includes(stage)
    readonly property bool isBusy: helper.act !== "" && helper.act !== "look"

    function refresh() { helper.look(); }

    function detail(stage: string): string {
        switch (stage) {
        case "requiresApproval": return Tr.t("helper-setup.detail.requiresApproval." + helper.system);
        case "silent": return helper.silence !== "" ? helper.silence : Tr.t("helper-error.timeout", {call: "Ping"});
        case "old": return Tr.t("helper-error.reregister-failed");
        case "": return Tr.t("helper-setup.act.look");
        default: return Tr.t("helper-setup.detail." + stage);
        }
    }

    // What the button of a stage does, with its word.
    function step(stage: string): var {
        switch (stage) {
        case "notRegistered": return {word: Tr.t("helper-setup.set-up"), act: () => helper.setUp(), kind: "main", asks: true};
        case "old": return {word: Tr.t("helper-setup.update"), act: () => helper.setUp(), kind: "main", asks: true};
        case "silent": return {word: Tr.t("helper-setup.repair"), act: () => helper.repair(), kind: "main", asks: true};
        default: return {word: Tr.t("helper-setup.look"), act: () => helper.look(), kind: "plain", asks: false};
        }
    }

    title: Tr.t("helper-setup.title")
    line: Tr.t("helper-setup.line")
    looks: ({
        remove: () => removal.open()
    })
    scrolls: true
    settled: helper.act === ""
    Component.onCompleted: helper.look()

    actions: [
        Button {
            visible: page.stage === "working"
            enabled: page.helper.act === ""
            text: Tr.t("helper-setup.repair")
            onClicked: page.helper.repair()
        },
        Button {
            visible: page.isThere
            enabled: page.helper.act === ""
            text: Tr.t("helper-setup.remove")
            Accessible.name: Tr.t("helper-setup.remove-the-privileged-helper")
            onClicked: removal.open()
        }
    ]

    Column {
        width: Math.min(parent.width, Theme.wideWidth)
        spacing: Theme.space16

        ErrorNote {
            width: parent.width
            visible: page.helper.failure !== ""
            title: Tr.t("helper-setup.failed")
            text: page.helper.failure
        }
        Card {
            width: parent.width
            implicitHeight: state.implicitHeight + 2 * padding
            padding: Theme.space24

            Column {
                id: state
                width: parent.width
                spacing: Theme.space24

                HelperPicture {
                    width: parent.width
                    way: page.stage === "working" ? "open"
                        : ["old", "silent", "requiresApproval", "notFound"].includes(page.stage) ? "faulty" : "closed"
                }
                Column {
                    width: parent.width
                    spacing: Theme.space4

                    Label {
                        width: parent.width
                        text: page.stage === "" ? " " : Tr.t("helper-setup.stage." + page.stage)
                        font: Theme.name
                        wrapMode: Text.Wrap
                    }
                    Label {
                        width: parent.width
                        text: page.detail(page.stage)
                        color: Theme.second
                        wrapMode: Text.Wrap
                        lineHeight: 1.3
                    }
                }
                Row {
                    spacing: Theme.space12

                    Button {
                        id: next
                        readonly property var step: page.step(page.stage)
                        enabled: page.helper.act === ""
                        kind: step.kind
                        text: step.word
                        onClicked: step.act()
                    }
                    Label {
                        height: next.height
                        text: page.isBusy ? Tr.t("helper-setup.act." + page.helper.act)
                            : next.step.asks && page.helper.asks ? Tr.t("helper-setup.asks") : ""
                        color: Theme.second
                    }
                }
            }
        }
        SettingsCard {
            width: parent.width
            visible: page.isThere && page.helper.facts.length > 0
            title: Tr.t("helper-setup.facts")

            Repeater {
                model: page.helper.facts

                FactRow {
                    required property var modelData
                    width: parent.width
                    labelWidth: Theme.fieldWidthMiddle
                    label: modelData.label
                    value: modelData.value
                }
            }
        }
        SettingsCard {
            width: parent.width
            title: Tr.t("helper-setup.uses")

            Repeater {
                model: [
                    {icon: "wrench.and.screwdriver", text: Tr.t("helper-setup.use.maintenance")},
                    {icon: "square.stack.3d.down.right", text: Tr.t("helper-setup.use.applications")},
                    {icon: "externaldrive", text: Tr.t("helper-setup.use.disks")}
                ]

                Item {
                    id: use
                    required property var modelData
                    width: parent.width
                    implicitHeight: words.implicitHeight

                    Icon {
                        id: shape
                        anchors.verticalCenter: parent.verticalCenter
                        name: use.modelData.icon
                        color: Theme.accent
                    }
                    Label {
                        id: words
                        anchors.left: shape.right
                        anchors.leftMargin: Theme.space12
                        anchors.right: parent.right
                        text: use.modelData.text
                        wrapMode: Text.Wrap
                    }
                }
            }
        }
    }

    ConfirmSheet {
        id: removal
        title: Tr.t("helper-setup.remove-the-privileged-helper")
        text: Tr.t("helper-setup.remove.text")
        confirmText: Tr.t("helper-setup.remove.confirm")
        onCancelled: close()
        onConfirmed: {
            close();
            page.helper.remove();
        }
    }
}

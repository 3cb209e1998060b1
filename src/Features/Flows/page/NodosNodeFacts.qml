import QtQuick
import Varnholt

// One node: what it is told, where it leads, how it goes.
Column {
    id: facts

    required property var editor
    readonly property var node: editor.node

    spacing: Theme.space12

    component Rule: Rectangle {
        width: facts.width
        height: Theme.hairline
        color: Theme.line
    }
    component Heading: Label {
        width: facts.width
        font: Theme.label
        color: Theme.second
        Accessible.role: Accessible.Heading
    }

    Item {
        width: parent.width
        height: Theme.space24

        Icon {
            id: picture
            anchors.verticalCenter: parent.verticalCenter
            name: facts.node.icon ?? ""
        }
        Label {
            anchors.left: picture.right
            anchors.leftMargin: Theme.space8
            anchors.right: badge.left
            anchors.rightMargin: Theme.space8
            anchors.verticalCenter: parent.verticalCenter
            text: facts.node.title ?? ""
            font: Theme.strong
            elide: Text.ElideMiddle
        }
        Badge {
            id: badge
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: (facts.node.state ?? "") !== ""
            running: facts.node.state === "running"
            outcome: running ? "" : facts.node.state ?? ""
            text: running ? Tr.t("nodes-page.running") : facts.node.stateText ?? ""
        }
    }
    // Always there, so that the fields below stay where they are while one is filled in.
    Item {
        width: parent.width
        height: Math.max(Theme.iconSize, standing.implicitHeight)

        Icon {
            id: warning
            visible: facts.node.problemText !== ""
            name: "exclamationmark.triangle"
            color: Theme.warning
        }
        Label {
            id: standing
            x: warning.visible ? Theme.iconSize + Theme.space8 : 0
            width: parent.width - x
            text: warning.visible ? facts.node.problemText ?? "" : facts.node.detail ?? ""
            color: warning.visible ? Theme.text : Theme.second
            wrapMode: Text.Wrap
        }
    }
    Column {
        width: parent.width
        spacing: Theme.space12
        visible: (facts.node.planText ?? "") !== ""

        Heading { text: Tr.t("nodes-page.plan.node") }
        Label {
            width: parent.width
            text: facts.node.planText ?? ""
            wrapMode: Text.Wrap
        }
        Rule {}
    }

    Column {
        width: parent.width
        spacing: Theme.space12
        enabled: !facts.editor.readOnly

        Repeater {
            model: facts.editor.fields
            NodosField {
                width: facts.width
                editor: facts.editor
            }
        }
        Column {
            width: parent.width
            spacing: Theme.space4

            Heading { text: Tr.t("nodes-page.title") }
            Field {
                width: facts.width
                name: Tr.t("nodes-page.title")
                placeholderText: facts.node.ownTitle ?? ""
                text: facts.node.givenTitle ?? ""
                onTextEdited: facts.editor.setTitle(text)
            }
        }
    }

    Column {
        width: parent.width
        spacing: Theme.space8
        visible: facts.editor.links.length > 0

        Rule {}
        Heading { text: Tr.t("nodes-page.then") }
        Repeater {
            model: facts.editor.links

            Column {
                id: link
                required property var modelData

                width: facts.width
                spacing: Theme.space4

                Label {
                    width: parent.width
                    text: link.modelData.title
                    elide: Text.ElideMiddle
                }
                Item {
                    width: parent.width
                    height: Theme.fieldHeight

                    ComboField {
                        width: parent.width - cut.width
                        enabled: !facts.editor.readOnly
                        name: Tr.t("nodes-page.condition.of", {name: link.modelData.title})
                        options: facts.editor.conditionOptions
                        value: link.modelData.condition
                        onChosen: value => facts.editor.setCondition(link.modelData.edgeId, value)
                    }
                    IconButton {
                        id: cut
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        enabled: !facts.editor.readOnly
                        iconName: "xmark"
                        text: Tr.t("nodes-page.cut", {name: link.modelData.title})
                        onClicked: facts.editor.removeEdge(link.modelData.edgeId)
                    }
                }
            }
        }
    }

    Column {
        width: parent.width
        spacing: Theme.space8
        visible: facts.node.state === "running" || (facts.node.summary ?? "") !== "" || (facts.node.output ?? "") !== ""

        Rule {}
        Heading {
            text: facts.node.state === "running" ? Tr.t("nodes-page.now")
                : Tr.t("nodes-page.result") + (facts.node.durationText ? " · " + facts.node.durationText : "")
        }
        Label {
            width: parent.width
            visible: text !== ""
            text: facts.node.state === "running" ? facts.node.stateText : facts.node.summary ?? ""
            wrapMode: Text.Wrap
        }
        Bar {
            visible: facts.node.state === "running"
            width: parent.width
            value: -1
            name: Tr.t("nodes-page.running")
        }
        Rectangle {
            visible: (facts.node.output ?? "") !== ""
            width: parent.width
            height: Math.min(output.implicitHeight, Theme.noticeHeight) + 2 * Theme.space8
            radius: Theme.radiusField
            color: Theme.background
            border.width: Theme.hairline
            border.color: Theme.line

            Flickable {
                anchors.fill: parent
                anchors.margins: Theme.space8
                clip: true
                contentHeight: output.implicitHeight
                boundsBehavior: Flickable.StopAtBounds

                TextEdit {
                    id: output
                    width: parent.width
                    readOnly: true
                    selectByMouse: true
                    activeFocusOnTab: visible
                    text: facts.node.output ?? ""
                    textFormat: TextEdit.PlainText
                    wrapMode: TextEdit.WrapAnywhere
                    font: Theme.code
                    color: Theme.text
                    selectionColor: Theme.accent
                    selectedTextColor: Theme.accentInk
                    Accessible.name: Tr.t("nodes-page.output")
                }
            }
        }
    }
}

import QtQuick
import Varnholt

// The whole flow: its name, what is wrong with it, what a run would do.
Column {
    id: facts

    required property var editor

    spacing: Theme.space12

    component Heading: Label {
        width: facts.width
        font: Theme.label
        color: Theme.second
        Accessible.role: Accessible.Heading
    }
    component Line: NodosLine {
        required property var modelData

        width: facts.width
        title: modelData.title
        text: modelData.text
        enabled: modelData.node !== ""
        onClicked: facts.editor.select(modelData.node)
    }

    Column {
        width: parent.width
        spacing: Theme.space4

        Heading { text: Tr.t("nodes-page.name") }
        Field {
            width: parent.width
            enabled: !facts.editor.readOnly
            name: Tr.t("nodes-page.name")
            text: facts.editor.name
            onTextEdited: facts.editor.rename(text)
        }
    }
    Label {
        visible: facts.editor.readOnly
        width: parent.width
        text: Tr.t("nodes-page.read-only")
        color: Theme.second
        wrapMode: Text.Wrap
    }
    Column {
        width: parent.width
        spacing: Theme.space4
        visible: facts.editor.problems.length > 0

        Heading { text: Tr.t("nodes-page.problems", {count: facts.editor.problems.length}) }
        Repeater {
            model: facts.editor.problems
            Line {
                iconName: "exclamationmark.triangle"
                ink: modelData.blocks ? Theme.bad : Theme.warning
            }
        }
    }
    Column {
        width: parent.width
        spacing: Theme.space4
        visible: facts.editor.isPlanned

        Heading { text: Tr.t("nodes-page.plan") }
        Repeater {
            model: facts.editor.plan
            Line {
                iconName: "arrow.right"
                ink: Theme.accent
            }
        }
    }
    Label {
        visible: !facts.editor.isPlanned && facts.editor.problems.length === 0
        width: parent.width
        text: Tr.t("nodes-page.hint")
        color: Theme.second
        wrapMode: Text.Wrap
        lineHeight: 1.3
    }
}

import QtQuick
import Varnholt

// One edge: which result lets it go on.
Column {
    id: facts

    required property var editor
    readonly property var edge: editor.edge

    spacing: Theme.space12

    Label {
        width: parent.width
        text: Tr.t("nodes-page.edge", {from: facts.edge.from ?? "", to: facts.edge.to ?? ""})
        font: Theme.strong
        wrapMode: Text.Wrap
    }
    ComboField {
        width: parent.width
        enabled: !facts.editor.readOnly
        name: Tr.t("nodes-page.condition")
        options: facts.editor.conditionOptions
        value: facts.edge.condition ?? ""
        onChosen: value => facts.editor.setCondition(facts.edge.edgeId, value)
    }
    Button {
        visible: !facts.editor.readOnly
        text: Tr.t("nodes-page.cut.do")
        onClicked: facts.editor.removeSelected()
    }
}

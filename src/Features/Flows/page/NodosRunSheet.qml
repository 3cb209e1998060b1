import QtQuick
import Varnholt

// Asks what a run by hand works on, where only what starts the flow by itself would say it.
ConfirmSheet {
    id: sheet

    property var needed: []
    property var values: ({})
    property var go: null

    // Asks for `wanted` where there is something to ask, and calls `act` with the answers.
    function run(wanted: var, act: var) {
        needed = wanted;
        values = {};
        go = act;
        firstField = fields.itemAt(0)?.field ?? null;
        needed.length > 0 ? open() : go(values);
    }

    title: Tr.t("nodes-page.values")
    text: Tr.t("nodes-page.values.text")
    confirmText: Tr.t("nodes-page.run")
    onCancelled: close()
    onConfirmed: {
        close();
        go(values);
    }

    Column {
        width: parent.width
        spacing: Theme.space12

        Repeater {
            id: fields
            model: sheet.needed

            Column {
                id: value
                required property var modelData
                property alias field: place

                width: parent.width
                spacing: Theme.space4

                Label {
                    text: value.modelData.title
                    font: Theme.label
                    color: Theme.second
                    Accessible.ignored: true
                }
                PathField {
                    id: place
                    width: parent.width
                    name: value.modelData.title
                    folders: value.modelData.isFolder
                    onPathChanged: sheet.values[value.modelData.name] = path
                }
            }
        }
    }
}

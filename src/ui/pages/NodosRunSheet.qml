import QtQuick
import Varnholt

// Asks what a run by hand works on, where only what starts the flow by itself would say it.
ConfirmSheet {
    id: sheet

    required property var editor
    property var needed: []
    property var values: ({})

    // Asks where there is something to ask, and runs.
    function run() {
        needed = editor.neededValues();
        values = {};
        needed.length > 0 ? open() : editor.run();
    }

    title: Tr.t("nodes-page.values")
    text: Tr.t("nodes-page.values.text")
    confirmText: Tr.t("nodes-page.run")
    onCancelled: close()
    onConfirmed: {
        close();
        editor.run(values);
    }

    Column {
        width: parent.width
        spacing: Theme.space12

        Repeater {
            model: sheet.needed

            Column {
                id: value
                required property var modelData

                width: parent.width
                spacing: Theme.space4

                Label {
                    text: value.modelData.title
                    font: Theme.label
                    color: Theme.second
                    Accessible.ignored: true
                }
                PathField {
                    width: parent.width
                    name: value.modelData.title
                    folders: value.modelData.isFolder
                    onPathChanged: sheet.values[value.modelData.name] = path
                }
            }
        }
    }
}

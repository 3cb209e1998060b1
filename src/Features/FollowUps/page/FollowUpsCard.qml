import QtQuick
import Varnholt

// What follows each run, tool by tool.
SettingsCard {
    id: card

    required property Page page
    readonly property var looks: ({"follow-ups": () => show(followUps.tools[0].id)})
    readonly property var followUps: App.model("followUps")

    function show(tool: string) {
        sheet.toolId = tool;
        sheet.open();
    }

    title: Tr.t("follow-ups.title")

    Repeater {
        model: card.followUps.tools

        SettingsRow {
            id: row
            required property var modelData

            title: modelData.name
            line: modelData.line === "" ? Tr.t("follow-ups.none") : modelData.line

            Button {
                text: Tr.t("follow-ups.change")
                Accessible.name: text + " " + row.modelData.name
                onClicked: card.show(row.modelData.id)
            }
        }
    }
    FollowUpSheet { id: sheet }
}

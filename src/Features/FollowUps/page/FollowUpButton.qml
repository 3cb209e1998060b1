import QtQuick
import Varnholt

// Beside a tool: what follows each of its runs.
Button {
    id: button

    required property string toolId
    readonly property var followUps: App.model("followUps")
    readonly property string line: {
        followUps.knownAddresses; // told anew with every change of wishes
        return followUps.lineOf(toolId);
    }

    kind: line === "" ? "quiet" : "plain"
    text: line === "" ? Tr.t("follow-ups.button") : line
    Accessible.description: Tr.t("follow-ups.title")
    onClicked: sheet.open()

    FollowUpSheet {
        id: sheet
        toolId: button.toolId
    }
}

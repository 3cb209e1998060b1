import QtQuick
import Varnholt

// What follows each run of a tool: a mail, a report.
ConfirmSheet {
    id: sheet

    property string toolId
    property string fault
    property string report
    readonly property var followUps: App.model("followUps")
    // Addresses that were used before and are not in the field yet.
    readonly property var offered: visible ? followUps.knownAddresses.filter(address =>
        !addresses.text.split(/[\s,;]+/).includes(address)).slice(0, 4) : []

    function add(address: string) {
        const before = addresses.text.trim().replace(/[,;]+$/, "");
        addresses.text = before === "" ? address : before + ", " + address;
    }

    firstField: addresses
    title: Tr.t("follow-ups.sheet.title", {tool: toolId === "" ? "" : App.shell.tool(toolId).name})
    text: Tr.t("follow-ups.sheet.text", {folder: followUps.reportsFolder})
    confirmText: Tr.t("follow-ups.sheet.save")
    onAboutToShow: {
        const wishes = followUps.wishes(toolId);
        fault = "";
        addresses.text = wishes.recipients;
        report = wishes.report;
    }
    onCancelled: close()
    onConfirmed: {
        fault = followUps.save(toolId, addresses.text, report);
        if (fault === "")
            close();
    }

    Column {
        width: parent.width
        spacing: Theme.space12

        FormRow {
            title: Tr.t("follow-ups.sheet.mail")

            Field {
                id: addresses
                width: parent.width
                name: Tr.t("follow-ups.sheet.mail")
                placeholderText: Tr.t("follow-ups.sheet.mail.hint")
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space4
            visible: sheet.offered.length > 0

            Repeater {
                model: sheet.offered

                Button {
                    required property string modelData

                    kind: "quiet"
                    iconName: "plus"
                    text: modelData
                    onClicked: sheet.add(modelData)
                }
            }
        }
        Label {
            width: parent.width
            visible: addresses.length > 0 && !sheet.followUps.isMailReady
            text: Tr.t("follow-ups.sheet.no-server")
            color: Theme.warning
            wrapMode: Text.Wrap
        }
        FormRow {
            title: Tr.t("follow-ups.sheet.report")

            SegmentedControl {
                name: Tr.t("follow-ups.sheet.report")
                options: sheet.followUps.reportOptions
                value: sheet.report
                onChosen: value => sheet.report = value
            }
        }
        ErrorNote {
            width: parent.width
            visible: sheet.fault !== ""
            title: sheet.fault
        }
    }
}

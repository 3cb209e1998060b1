import QtQuick
import Varnholt

// What the one button does.
ConfirmSheet {
    id: sheet

    required property var optimize
    property var profile: ({maintenanceTasks: []})
    property string fault
    readonly property var steps: visible ? optimize.profileSteps() : []

    function put(key: string, value: var) {
        profile = Object.assign({}, profile, {[key]: value});
    }

    title: Tr.t("home.optimize.profile")
    text: Tr.t("home.optimize.profile.text")
    confirmText: Tr.t("home.optimize.profile.save")
    onAboutToShow: {
        fault = "";
        profile = optimize.profile();
    }
    onCancelled: close()
    onConfirmed: {
        fault = optimize.saveProfile(profile);
        if (fault === "")
            close();
    }

    Column {
        id: rows
        width: parent.width
        spacing: Theme.space12

        Repeater {
            model: sheet.steps

            Column {
                id: step
                required property var modelData
                readonly property bool isList: modelData.key === "maintenanceTasks"
                readonly property bool isOn: sheet.profile[modelData.key] === true

                width: rows.width
                spacing: Theme.space8

                SettingsRow {
                    title: step.modelData.title
                    line: !step.modelData.isAvailable ? Tr.t("shell.absent.title")
                        : step.isList ? Tr.t("home.optimize.profile.tasks", {count: sheet.profile.maintenanceTasks.length})
                        : step.modelData.line

                    Switch {
                        visible: !step.isList
                        name: step.modelData.title
                        // What is on without its tool can still be turned off.
                        enabled: step.modelData.isAvailable || step.isOn
                        checked: step.isOn
                        onClicked: {
                            sheet.put(step.modelData.key, checked);
                            checked = Qt.binding(() => step.isOn);
                        }
                    }
                }
                Loader {
                    width: parent.width
                    active: step.isList
                    visible: active
                    sourceComponent: MaintenanceChoice {
                        room: sheet.parent.height - 2 * Theme.space32 - sheet.restHeight
                        chosen: sheet.profile.maintenanceTasks
                        onPicked: tasks => sheet.put("maintenanceTasks", tasks)
                    }
                }
            }
        }
        ErrorNote {
            width: parent.width
            visible: sheet.fault !== ""
            title: sheet.fault
        }
    }

    // All but the list of tasks.
    readonly property int restHeight: Theme.windowMinimumHeight - Theme.noticeHeight
}

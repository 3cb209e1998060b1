import QtQuick
import Varnholt

// What runs, when, and what it needs to know.
ConfirmSheet {
    id: form

    required property var schedules
    property string taskId
    property var draft: ({})
    readonly property string action: draft.action ?? ""
    readonly property string kind: draft.kind ?? "daily"
    property string fault

    signal flowsWanted
    signal saved

    function put(key: string, value: var) {
        draft = Object.assign({}, draft, {[key]: value});
    }

    firstField: actionField
    title: taskId === "" ? Tr.t("schedules.form.new") : Tr.t("schedules.form.edit")
    confirmText: Tr.t("schedules.form.save")
    onAboutToShow: {
        fault = "";
        draft = schedules.draft(taskId);
        titleField.text = draft.title;
        timeField.text = draft.time;
        hoursField.text = draft.hours;
    }
    onCancelled: close()
    onConfirmed: {
        fault = schedules.save(taskId, Object.assign({}, draft, {title: titleField.text, time: timeField.text, hours: hoursField.text}));
        if (fault !== "")
            return;
        close();
        saved();
    }

    Column {
        width: parent.width
        spacing: Theme.space12

        FormRow {
            title: Tr.t("schedules.form.action")

            ComboField {
                id: actionField
                width: parent.width - flows.width - Theme.space8
                name: Tr.t("schedules.form.action")
                options: form.visible ? form.schedules.actionOptions(form.action) : []
                value: form.action
                onChosen: value => form.put("action", value)
            }
            Button {
                id: flows
                anchors.right: parent.right
                text: Tr.t("schedules.form.flow")
                onClicked: {
                    form.close();
                    form.flowsWanted();
                }
            }
        }
        FormRow {
            title: Tr.t("schedules.form.title")

            Field {
                id: titleField
                width: parent.width
                name: Tr.t("schedules.form.title")
                placeholderText: actionField.displayText
            }
        }
        Repeater {
            model: form.visible ? form.schedules.payloadFields(form.action) : []

            SchedulePayload {
                required property var modelData

                field: modelData
                visible: modelData.unlessGiven === "" || (form.draft[modelData.unlessGiven] ?? "") === ""
                value: form.draft[modelData.key]
                onEdited: value => form.put(modelData.key, value)
            }
        }
        FormRow {
            title: Tr.t("schedules.form.when")

            SegmentedControl {
                id: kinds
                name: Tr.t("schedules.form.when")
                options: [
                    {value: "daily", title: Tr.t("schedules.kind.daily")},
                    {value: "weekly", title: Tr.t("schedules.kind.weekly")},
                    {value: "hourly", title: Tr.t("schedules.kind.hourly")}
                ]
                value: form.kind
                onChosen: value => form.put("kind", value)
            }
            Row {
                anchors.top: kinds.bottom
                anchors.topMargin: Theme.space8
                spacing: Theme.space8

                ComboField {
                    visible: form.kind === "weekly"
                    name: Tr.t("schedules.form.weekday")
                    options: form.schedules.weekdayOptions
                    value: form.draft.weekday ?? ""
                    onChosen: value => form.put("weekday", value)
                }
                Label {
                    visible: form.kind !== "hourly"
                    height: Theme.fieldHeight
                    text: Tr.t("schedules.form.at")
                    color: Theme.second
                }
                Field {
                    id: timeField
                    visible: form.kind !== "hourly"
                    width: Theme.sizeWidth
                    name: Tr.t("schedules.form.time")
                }
                Label {
                    visible: form.kind === "hourly"
                    height: Theme.fieldHeight
                    text: Tr.t("schedules.form.every")
                    color: Theme.second
                }
                Field {
                    id: hoursField
                    visible: form.kind === "hourly"
                    width: Theme.sizeWidth
                    name: Tr.t("schedules.form.hours")
                }
                Label {
                    visible: form.kind === "hourly"
                    height: Theme.fieldHeight
                    text: Tr.t("schedules.form.hours")
                    color: Theme.second
                }
            }
        }
        CheckBox {
            width: parent.width
            text: Tr.t("schedules.form.catch-up")
            checked: form.draft.runIfMissed ?? false
            onClicked: form.put("runIfMissed", checked)
        }
        ErrorNote {
            width: parent.width
            visible: form.fault !== ""
            title: form.fault
        }
    }
}

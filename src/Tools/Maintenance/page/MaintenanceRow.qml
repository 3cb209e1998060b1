import QtQuick
import Varnholt

// A task: what it does, what it needs, how it went, and its button; of one that cannot run here only why, quietly.
TableRow {
    id: row

    required property var modelData
    required property var maintenance
    readonly property bool isRunning: maintenance.running === modelData.value
    readonly property bool isAbsent: modelData.missing !== ""
    readonly property bool needsHelper: !isAbsent && modelData.requiresRoot && !maintenance.helperIsReady
    readonly property var result: maintenance.results[modelData.value] ?? null

    signal acted

    implicitHeight: words.implicitHeight + 2 * Theme.space8
    name: [modelData.title, modelData.detail, marks.words, modelData.missing,
        needsHelper ? Tr.t("maintenance-page.needs-helper") : "",
        isRunning ? Tr.t("maintenance-page.running") : result ? result.text : ""].filter(text => text !== "").join(", ")
    Accessible.onPressAction: row.acted()
    acts: () => isAbsent ? [] : [{text: button.text, icon: button.iconName, shortcut: "Return", enabled: button.enabled, act: () => row.acted()}]

    Column {
        id: words
        anchors.left: parent.left
        anchors.right: button.left
        anchors.rightMargin: Theme.space16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Item {
            width: parent.width
            height: Math.max(title.implicitHeight, Theme.space16 + Theme.space4)

            Label {
                id: title
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, parent.width - (marks.width > 0 ? marks.width + Theme.space12 : 0)
                    - (state.width > 0 ? state.width + Theme.space12 : 0))
                text: row.modelData.title
                font: row.isAbsent ? Theme.body : Theme.medium
                color: row.isAbsent ? Theme.second : Theme.text
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            MaintenanceMarks {
                id: marks
                anchors.left: title.right
                anchors.leftMargin: Theme.space12
                anchors.verticalCenter: parent.verticalCenter
                visible: !row.isAbsent
                task: row.modelData
            }
            Row {
                id: state
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    visible: row.needsHelper && !badge.visible
                    text: Tr.t("maintenance-page.needs-helper")
                    font: Theme.label
                    color: Theme.second
                    Accessible.ignored: true
                }
                Badge {
                    id: badge
                    visible: row.isRunning || row.result !== null
                    running: row.isRunning
                    outcome: row.isRunning || row.result === null ? "" : row.result.outcome
                    text: row.isRunning ? row.maintenance.elapsedText : row.result ? row.result.text : ""
                }
            }
        }
        Label {
            width: parent.width
            text: row.isAbsent ? row.modelData.missing : row.modelData.detail
            font: row.isAbsent ? Theme.label : Theme.body
            color: Theme.second
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
    Button {
        id: button
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(Theme.fieldWidthShort, implicitWidth)
        visible: !row.isAbsent
        // The row is worked from the list; return does the same.
        focusPolicy: Qt.NoFocus
        enabled: row.isRunning ? !row.maintenance.isStopping : !row.isAbsent && row.maintenance.running === ""
        iconName: row.isRunning ? "stop" : row.needsHelper ? "" : "play"
        text: row.isRunning ? Tr.t("shell.stop")
            : row.needsHelper ? Tr.t("maintenance-page.set-up") : Tr.t("maintenance-page.run")
        onClicked: row.acted()
    }
}

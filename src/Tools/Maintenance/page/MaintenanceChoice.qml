import QtQuick
import Varnholt

// Maintenance tasks to choose from.
ListTable {
    id: table

    // Raw values.
    property var chosen: []
    // As high as it may be.
    property real room: 5 * Theme.rowHeightTwo

    signal picked(var tasks)

    function toggle(row: int) {
        const task = model[row];
        if (chosen.includes(task.value))
            picked(chosen.filter(value => value !== task.value));
        else if (task.missing === "")
            // In the order of the list, whatever the order of choosing.
            picked(model.map(each => each.value).filter(value => value === task.value || chosen.includes(value)));
    }

    height: Math.min(list.contentHeight + 3 * Theme.space4, room)
    radius: Theme.radiusField
    name: Tr.t("maintenance-page.choice")
    model: App.model("maintenance").tasks
    delegate: TableRow {
        id: row
        required property var modelData
        readonly property bool isChosen: table.chosen.includes(modelData.value)

        implicitHeight: words.implicitHeight + 2 * Theme.space8
        name: [modelData.title, marks.words, modelData.missing].filter(text => text !== "").join(", ")
        Accessible.checkable: true
        Accessible.checked: isChosen
        onClicked: table.toggle(index)

        CheckMark {
            id: mark
            anchors.verticalCenter: parent.verticalCenter
            state: row.isChosen ? "all" : "none"
            opacity: row.modelData.missing === "" || row.isChosen ? 1 : 0.5
        }
        Column {
            id: words
            anchors.left: mark.right
            anchors.leftMargin: Theme.space12
            anchors.right: marks.left
            anchors.rightMargin: Theme.space12
            anchors.verticalCenter: parent.verticalCenter

            Label {
                width: parent.width
                text: row.modelData.title
                color: row.modelData.missing === "" ? Theme.text : Theme.second
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: row.modelData.missing
                font: Theme.label
                color: Theme.second
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }
        MaintenanceMarks {
            id: marks
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            task: row.modelData
        }
    }
    onSelected: row => toggle(row)
    onOpened: row => toggle(row)
}

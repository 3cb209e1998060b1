import QtQuick
import Varnholt

// One thing that an action needs to know: a stored pair of folders, maintenance tasks, a folder or a yes.
Loader {
    id: row

    property var field
    property var value

    signal edited(var value)

    width: parent ? parent.width : 0
    sourceComponent: field.kind === "flag" ? flag : field.kind === "folder" ? folder : field.kind === "pair" ? pair : tasks

    Component {
        id: tasks

        FormRow {
            title: row.field.title

            MaintenanceChoice {
                width: parent.width
                room: 4.5 * Theme.rowHeight
                chosen: row.value ?? []
                onPicked: tasks => row.edited(tasks)
            }
        }
    }
    Component {
        id: folder

        FormRow {
            title: row.field.title

            PathField {
                width: parent.width
                name: row.field.title
                onPathChanged: row.edited(path)
                Component.onCompleted: path = row.value ?? ""
            }
        }
    }
    Component {
        id: pair

        FormRow {
            title: row.field.title

            ComboField {
                width: parent.width
                name: row.field.title
                options: row.field.options
                value: row.value ?? ""
                onChosen: value => row.edited(value)
            }
        }
    }
    Component {
        id: flag

        CheckBox {
            text: row.field.title
            checked: row.value === true
            onClicked: row.edited(checked)
        }
    }
}

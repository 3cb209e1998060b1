import QtQuick
import Varnholt

// One thing that an action needs to know: one or several of a list, a folder or a yes.
Loader {
    id: row

    property var field
    property var value

    signal edited(var value)

    width: parent ? parent.width : 0
    sourceComponent: field.kind === "flag" ? flag : field.kind === "folder" ? folder : field.kind === "choice" ? choice : several

    Component {
        id: several

        FormRow {
            title: row.field.title

            // The feature's own way to choose: it has `chosen`, `room` and the signal `picked`.
            Loader {
                id: editor
                width: parent.width
                Component.onCompleted: setSource(Qt.resolvedUrl(row.field.editor + ".qml"), {
                    room: 4.5 * Theme.rowHeight,
                    chosen: Qt.binding(() => row.value ?? [])
                })
                Connections {
                    target: editor.item
                    function onPicked(values: var) { row.edited(values); }
                }
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
        id: choice

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

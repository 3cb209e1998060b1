import QtQuick
import Varnholt

// One thing that an action needs to know: a text, a folder or a yes.
Loader {
    id: row

    property var field
    property var value

    signal edited(var value)

    width: parent ? parent.width : 0
    sourceComponent: field.kind === "flag" ? flag : field.kind === "folder" ? folder : words

    Component {
        id: words

        FormRow {
            title: row.field.title

            Field {
                width: parent.width
                name: row.field.title
                onTextEdited: row.edited(text)
                Component.onCompleted: text = row.value ?? ""
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
        id: flag

        CheckBox {
            text: row.field.title
            checked: row.value === true
            onClicked: row.edited(checked)
        }
    }
}

import QtQuick
import QtQuick.Templates as T
import Varnholt

// One thing to fill in, by its kind. Where variables may stand, they are offered while the field has the keyboard and
// go in at the cursor.
Column {
    id: field

    required property var editor
    required property string fieldKey
    required property string kind
    required property string title
    required property string value
    required property var options
    required property bool takesVariables
    readonly property bool several: kind === "multiline" || kind === "list" || kind === "paths"
    readonly property bool isPath: kind === "folder" || kind === "paths"
    property Item input: place.item ? place.item.input : null

    function set(text: string) { editor.setField(fieldKey, text); }

    function insert(token: string) {
        input.insert(input.cursorPosition, token);
        input.forceActiveFocus();
        set(input.text);
    }

    // A chosen path takes the field's place, or its line among several.
    function take(path: string) {
        set(kind === "paths" && value !== "" ? value.replace(/\n*$/, "\n") + path : path);
    }

    spacing: Theme.space4

    Label {
        visible: field.kind !== "toggle"
        width: parent.width
        text: field.kind === "list" || field.kind === "paths" ? Tr.t("nodes-page.field.lines", {title: field.title}) : field.title
        font: Theme.label
        color: Theme.second
        Accessible.ignored: true
    }
    Loader {
        id: place
        width: parent.width
        sourceComponent: field.kind === "toggle" ? toggle : field.kind === "choice" ? choice : field.several ? lines : line
    }
    Flow {
        id: chips
        width: parent.width
        spacing: Theme.space4
        visible: field.takesVariables && field.input !== null && (field.input.activeFocus || chips.hasFocus)
        readonly property bool hasFocus: repeater.focused > 0

        Repeater {
            id: repeater
            property int focused: 0
            model: chips.parent.takesVariables ? field.editor.variables : []

            T.AbstractButton {
                id: chip
                required property var modelData

                implicitWidth: word.implicitWidth + 2 * Theme.space8
                implicitHeight: word.implicitHeight + Theme.space4 + 2
                hoverEnabled: true
                focusPolicy: Qt.TabFocus
                onActiveFocusChanged: repeater.focused += activeFocus ? 1 : -1
                onClicked: field.insert(modelData.token)
                Accessible.name: Tr.t("nodes-page.field.insert", {name: modelData.title})
                Keys.onReturnPressed: chip.clicked()

                background: Rectangle {
                    radius: height / 2
                    color: chip.hovered ? Theme.accent : Theme.soft
                    FocusRing { shown: chip.visualFocus }
                }
                contentItem: Label {
                    id: word
                    text: chip.modelData.title
                    font: Theme.labelMedium
                    color: chip.hovered ? Theme.accentInk : Theme.accent
                    horizontalAlignment: Text.AlignHCenter
                    Accessible.ignored: true
                }
            }
        }
    }

    Component {
        id: toggle
        CheckBox {
            readonly property Item input: null
            text: field.title
            checked: field.value === "true"
            onToggled: field.set(checked ? "true" : "false")
        }
    }
    Component {
        id: choice
        ComboField {
            readonly property Item input: null
            name: field.title
            options: field.options
            value: field.value
            onChosen: value => field.set(value)
        }
    }
    Component {
        id: line
        Item {
            readonly property Item input: edit
            implicitHeight: edit.implicitHeight

            Field {
                id: edit
                width: parent.width - (choose.visible ? choose.width : 0)
                name: field.title
                inputMethodHints: field.kind === "number" ? Qt.ImhDigitsOnly : Qt.ImhNone
                Component.onCompleted: text = field.value
                onTextEdited: field.set(text)
                onEditingFinished: if (text !== field.value) text = field.value

                DropArea {
                    anchors.fill: parent
                    enabled: field.isPath
                    keys: ["text/uri-list"]
                    onDropped: drop => field.take(App.localPath(drop.urls[0]))
                }
            }
            NodosPlaceButton {
                id: choose
                visible: field.isPath
                anchors.right: parent.right
                path: field.value
                onChosen: path => field.take(path)
            }
            Connections {
                target: field
                function onValueChanged() {
                    if (edit.text !== field.value && !(edit.activeFocus && field.kind === "number"))
                        edit.text = field.value;
                }
            }
        }
    }
    Component {
        id: lines
        Item {
            readonly property Item input: area.input
            implicitHeight: area.implicitHeight

            TextBox {
                id: area
                width: parent.width - (chooseLine.visible ? chooseLine.width : 0)
                grows: true
                name: field.title
                Component.onCompleted: text = field.value
                onEdited: if (text !== field.value) field.set(text)

                DropArea {
                    anchors.fill: parent
                    enabled: field.isPath
                    keys: ["text/uri-list"]
                    onDropped: drop => drop.urls.forEach(url => field.take(App.localPath(url)))
                }
            }
            NodosPlaceButton {
                id: chooseLine
                visible: field.isPath
                anchors.right: parent.right
                path: field.value.split("\n")[0]
                onChosen: path => field.take(path)
            }
            Connections {
                target: field
                // An empty line that is being written is no entry yet.
                function onValueChanged() {
                    if (area.text.replace(/\n+/g, "\n").replace(/^\n|\n$/g, "") !== field.value)
                        area.text = field.value;
                }
            }
        }
    }
}

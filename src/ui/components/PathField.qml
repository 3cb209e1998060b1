import QtQuick
import Varnholt

// A folder or a file: typed, dropped or chosen.
FocusScope {
    id: control

    property alias path: field.text
    property alias placeholderText: field.placeholderText
    property string name
    property bool folders: true

    signal edited(string path)

    implicitWidth: Theme.listWidth
    implicitHeight: Theme.fieldHeight
    Accessible.name: name

    Field {
        id: field
        focus: true
        anchors.left: parent.left
        anchors.right: choose.left
        anchors.rightMargin: Theme.space8
        name: control.name
        onEditingFinished: control.edited(text)

        DropArea {
            anchors.fill: parent
            keys: ["text/uri-list"]
            onDropped: drop => {
                field.text = App.localPath(drop.urls[0]);
                control.edited(field.text);
            }
        }
    }
    Button {
        id: choose
        anchors.right: parent.right
        text: Tr.t("shell.choose")
        onClicked: {
            dialog.active = true;
            dialog.item.path = control.path;
            dialog.item.open();
        }
    }
    Loader {
        id: dialog
        active: false
        source: control.folders ? "FolderChooser.qml" : "FileChooser.qml"
    }
    Connections {
        target: dialog.item
        function onChosen(url: url) {
            field.text = App.localPath(url);
            control.edited(field.text);
        }
    }
}

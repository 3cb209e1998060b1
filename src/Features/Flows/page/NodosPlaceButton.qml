import QtQuick
import Varnholt

// Opens the system's choice of a folder.
IconButton {
    id: button

    property string path

    signal chosen(string path)

    implicitHeight: Theme.fieldHeight
    iconName: "folder"
    text: Tr.t("shell.choose")
    onClicked: {
        dialog.active = true;
        dialog.item.open();
    }

    Loader {
        id: dialog
        active: false
        sourceComponent: FolderChooser {
            path: button.path
            onChosen: url => button.chosen(App.localPath(url))
        }
    }
}

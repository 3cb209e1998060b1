import QtQuick
import QtQuick.Dialogs
import Varnholt

FolderDialog {
    property string path

    signal chosen(url url)

    currentFolder: App.folderUrl(path)
    onAccepted: chosen(selectedFolder)
}

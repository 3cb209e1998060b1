import QtQuick
import QtQuick.Dialogs
import Varnholt

FileDialog {
    property string path

    signal chosen(url url)

    currentFolder: App.folderUrl(path)
    onAccepted: chosen(selectedFile)
}

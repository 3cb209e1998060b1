import QtQuick.Dialogs
import Varnholt

FileDialog {
    fileMode: FileDialog.OpenFiles
    currentFolder: App.folderUrl(App.documentsFolder)
}

import QtQuick
import QtQuick.Dialogs

FolderDialog {
    signal chosen(url url)

    onAccepted: chosen(selectedFolder)
}

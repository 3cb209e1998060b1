import QtQuick
import QtQuick.Dialogs

FileDialog {
    signal chosen(url url)

    onAccepted: chosen(selectedFile)
}

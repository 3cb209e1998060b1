import QtQuick
import Varnholt

// The system's own dialogs, loaded when one is first wanted.
Item {
    id: choosers

    required property var copying
    property bool forPlace: false

    function pickFiles() {
        files.active = true;
        files.item.open();
    }

    function pickFolder(isPlace: bool) {
        forPlace = isPlace;
        folders.active = true;
        folders.item.open();
    }

    Loader {
        id: files
        active: false
        source: "CopyFilesChooser.qml"
    }
    Loader {
        id: folders
        active: false
        source: "../components/FolderChooser.qml"
        onLoaded: item.path = App.documentsFolder
    }
    Connections {
        target: files.item
        function onAccepted() { choosers.copying.addSources(files.item.selectedFiles.map(url => App.localPath(url))); }
    }
    Connections {
        target: folders.item
        function onChosen(url: url) {
            const path = App.localPath(url);
            choosers.forPlace ? choosers.copying.addDestinations([path]) : choosers.copying.addSources([path]);
        }
    }
}

import QtQuick
import Varnholt

// Asks for the folder of the list of runs as a table for a spreadsheet.
ConfirmSheet {
    id: sheet

    required property var activity

    signal saved(string path)

    property string file

    title: Tr.t("activity.export.title", {count: activity.runCount})
    text: Tr.t("activity.export.text", {file: sheet.file.slice(sheet.file.lastIndexOf("/") + 1)})
    confirmText: Tr.t("activity.export")
    onCancelled: close()
    onConfirmed: {
        failure.visible = !activity.exportCsv(file);
        if (failure.visible)
            return;
        close();
        saved(file);
    }
    onAboutToShow: {
        failure.visible = false;
        file = activity.exportPath(folder.path);
    }

    Column {
        width: parent.width
        spacing: Theme.space12

        PathField {
            id: folder
            width: parent.width
            name: Tr.t("activity.export.folder")
            path: App.documentsFolder
            onPathChanged: sheet.file = sheet.activity.exportPath(path)
        }
        ErrorNote {
            id: failure
            visible: false
            width: parent.width
            title: Tr.t("activity.export.failed", {path: sheet.file})
            text: sheet.activity.message
        }
    }
}

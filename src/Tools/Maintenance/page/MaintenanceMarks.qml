import QtQuick
import Varnholt

// That a task needs root, and that it takes long.
Row {
    id: marks

    required property var task
    readonly property string words: [task.requiresRoot ? Tr.t("maintenance-page.root") : "",
        task.isSlow ? Tr.t("maintenance-page.slow") : ""].filter(text => text !== "").join(", ")

    spacing: Theme.space12

    component Mark: Row {
        property alias icon: shape.name
        property alias text: word.text

        spacing: Theme.space4

        Icon {
            id: shape
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.space12
            color: Theme.second
        }
        Label {
            id: word
            font: Theme.label
            color: Theme.second
            Accessible.ignored: true
        }
    }
    Mark {
        visible: marks.task.isSlow
        icon: "clock"
        text: Tr.t("maintenance-page.slow")
    }
    Mark {
        visible: marks.task.requiresRoot
        icon: "lock"
        text: Tr.t("maintenance-page.root")
    }
}

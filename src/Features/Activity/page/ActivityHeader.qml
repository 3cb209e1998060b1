import QtQuick
import Varnholt

Item {
    id: header

    required property var activity
    property bool wide: true

    component Heading: SortHeading {
        height: header.height
        order: header.activity.order
        onWanted: key => header.activity.orderBy(key)
    }
    component Figure: Heading { numbers: true }

    Heading {
        x: Theme.space16 + ActivityColumns.icon
        key: "run"
        text: Tr.t("activity.heading.run")
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space16

        Heading {
            visible: header.wide
            width: ActivityColumns.trigger
            key: "trigger"
            text: Tr.t("activity.heading.trigger")
        }
        Figure {
            visible: header.wide
            width: ActivityColumns.files
            key: "files"
            text: Tr.t("activity.heading.files")
        }
        Figure {
            visible: header.wide
            width: ActivityColumns.size
            key: "size"
            text: Tr.t("activity.heading.size")
        }
        Figure {
            visible: header.wide
            width: ActivityColumns.duration
            key: "duration"
            text: Tr.t("activity.heading.duration")
        }
        Figure {
            width: ActivityColumns.time
            key: "time"
            text: Tr.t("activity.heading.time")
        }
    }
}

import QtQuick
import Varnholt

Item {
    id: header

    property bool wide: true

    component Heading: Label {
        height: header.height
        font: Theme.label
        color: Theme.third
    }
    component Figure: Heading { horizontalAlignment: Text.AlignRight }

    Heading {
        x: Theme.space16 + ActivityColumns.icon
        text: Tr.t("activity.heading.run")
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space16

        Heading {
            visible: header.wide
            width: ActivityColumns.trigger
            text: Tr.t("activity.heading.trigger")
        }
        Figure {
            visible: header.wide
            width: ActivityColumns.files
            text: Tr.t("activity.heading.files")
        }
        Figure {
            visible: header.wide
            width: ActivityColumns.size
            text: Tr.t("activity.heading.size")
        }
        Figure {
            visible: header.wide
            width: ActivityColumns.duration
            text: Tr.t("activity.heading.duration")
        }
        Figure {
            width: ActivityColumns.time
            text: Tr.t("activity.heading.time")
        }
    }
}

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

    Heading {
        x: Theme.space16 + ScheduleColumns.icon
        text: Tr.t("schedules.column.task")
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space16

        Heading {
            width: ScheduleColumns.last
            visible: header.wide
            text: Tr.t("schedules.column.last")
        }
        Heading {
            width: ScheduleColumns.next
            text: Tr.t("schedules.column.next")
            horizontalAlignment: Text.AlignRight
        }
        Heading {
            width: ScheduleColumns.on
            text: Tr.t("schedules.column.on")
            horizontalAlignment: Text.AlignRight
        }
    }
}

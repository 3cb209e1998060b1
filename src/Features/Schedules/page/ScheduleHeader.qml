import QtQuick
import Varnholt

Item {
    id: header

    required property var schedules
    property bool wide: true

    component Heading: SortHeading {
        height: header.height
        order: header.schedules.order
        onWanted: key => header.schedules.orderBy(key)
    }

    Heading {
        x: Theme.space16 + ScheduleColumns.icon
        key: "task"
        text: Tr.t("schedules.column.task")
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space16

        Heading {
            width: ScheduleColumns.last
            leftPadding: Theme.space12 + Theme.space8 // the mark of the outcome in each row
            visible: header.wide
            key: "last"
            text: Tr.t("schedules.column.last")
        }
        Heading {
            width: ScheduleColumns.next
            numbers: true
            key: "next"
            text: Tr.t("schedules.column.next")
        }
        Label {
            width: ScheduleColumns.on
            height: header.height
            font: Theme.label
            color: Theme.third
            text: Tr.t("schedules.column.on")
            horizontalAlignment: Text.AlignRight
        }
    }
}

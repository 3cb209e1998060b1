import QtQuick
import Varnholt

// What a copy looks like at work, drawn while there is none, and what it can do.
Column {
    id: example

    readonly property bool wide: width > Theme.textWidth + Theme.space32
    readonly property var lanes: [
        {name: Tr.t("copy-page.example.archive"), fraction: 0.86},
        {name: Tr.t("copy-page.example.backup"), fraction: 0.62},
        {name: Tr.t("copy-page.example.shuttle"), fraction: 0.4}
    ]

    spacing: Theme.space16

    Label {
        width: parent.width
        text: Tr.t("copy-page.example")
        font: Theme.strong
        Accessible.role: Accessible.Heading
    }
    Item {
        width: Math.min(parent.width, Theme.wideWidth)
        height: column.height
        Accessible.role: Accessible.Graphic
        Accessible.name: Tr.t("copy-page.example.spoken")

        Rectangle {
            id: box
            anchors.verticalCenter: parent.verticalCenter
            width: Math.round(parent.width * 0.3)
            height: names.implicitHeight + 2 * Theme.space12
            radius: Theme.radiusCard
            color: Theme.soft

            Column {
                id: names
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.margins: Theme.space12
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2

                Label {
                    width: parent.width
                    text: Tr.t("copy-page.example.source")
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    text: Tr.t("copy-page.files", {count: 512})
                    font: Theme.label
                    color: Theme.second
                    Accessible.ignored: true
                }
            }
        }
        Repeater {
            model: example.lanes.length

            CopyLine {
                required property int index

                x: box.width
                width: column.x - x
                height: column.height
                startY: box.y + box.height / 2
                endY: column.laneHeight * (index + 0.5) + column.spacing * index
                flows: true
            }
        }
        Column {
            id: column
            readonly property real laneHeight: Theme.rowHeight

            x: box.width + Theme.space32 + Theme.space24
            width: parent.width - x
            spacing: Theme.space4

            Repeater {
                model: example.lanes

                Item {
                    id: lane
                    required property var modelData

                    width: column.width
                    height: column.laneHeight

                    Label {
                        id: name
                        x: Theme.space12
                        width: Theme.fieldWidthShort
                        anchors.verticalCenter: parent.verticalCenter
                        text: lane.modelData.name
                        Accessible.ignored: true
                    }
                    Bar {
                        anchors.left: parent.left
                        anchors.leftMargin: Theme.space12 + (example.wide ? name.width : name.implicitWidth + Theme.space12)
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        value: lane.modelData.fraction
                        Accessible.ignored: true
                    }
                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: Theme.dot
                        height: width
                        x: -width / 2
                        radius: width / 2
                        color: Theme.accent
                    }
                }
            }
        }
    }
    Grid {
        id: facts
        width: parent.width
        columns: example.wide ? 3 : 1
        columnSpacing: Theme.space24
        rowSpacing: Theme.space12

        component Fact: Item {
            property alias icon: shape.name
            property alias title: title.text
            property alias text: line.text

            width: (facts.width - (facts.columns - 1) * facts.columnSpacing) / facts.columns
            height: line.y + line.height

            Icon {
                id: shape
                color: Theme.accent
            }
            Label {
                id: title
                x: Theme.iconSize + Theme.space8
                width: parent.width - x
                font: Theme.medium
                wrapMode: Text.Wrap
            }
            Label {
                id: line
                anchors.top: title.bottom
                anchors.topMargin: 2
                x: title.x
                width: title.width
                color: Theme.second
                wrapMode: Text.Wrap
                lineHeight: 1.3
            }
        }

        Fact {
            icon: "arrow.triangle.branch"
            title: Tr.t("copy-page.example.once")
            text: Tr.t("copy-page.example.once.line")
        }
        Fact {
            icon: "pause"
            title: Tr.t("copy-page.example.each")
            text: Tr.t("copy-page.example.each.line")
        }
        Fact {
            icon: "checkmark"
            title: Tr.t("copy-page.example.proof")
            text: Tr.t("copy-page.example.proof.line")
        }
    }
}

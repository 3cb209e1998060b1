import QtQuick
import Varnholt

// Who does what: the program with the person's rights, the helper, the system; and whether the way between is open.
Item {
    id: picture

    // "open", "closed" or "faulty".
    property string way: "closed"

    // How far the ways come in over the words of a stop, to its plate.
    readonly property real reach: (first.width - Theme.rowHeightTwo) / 2 - Theme.space12

    implicitHeight: first.height
    Accessible.role: Accessible.Graphic
    Accessible.name: [Tr.t("helper-setup.picture.you"), Tr.t("helper-setup.picture.helper"),
        Tr.t("helper-setup.picture.system")].join(" → ") + ": " + Tr.t("helper-setup.way." + way)

    component Stop: Column {
        id: stop
        property string iconName
        property string text
        property bool lit: true

        width: Theme.fieldWidthMiddle - Theme.space24
        spacing: Theme.space8

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Theme.rowHeightTwo
            height: width
            radius: Theme.radiusCard
            color: stop.lit ? Theme.soft : Theme.sunken

            Icon {
                anchors.centerIn: parent
                size: Theme.space24 - Theme.space4
                name: stop.iconName
                color: stop.lit ? Theme.accent : Theme.second
            }
        }
        Label {
            width: parent.width
            text: stop.text
            font: Theme.label
            color: Theme.second
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }

    // A line of dashes while nothing passes, with a mark in its middle that says the same.
    component Way: Item {
        id: way
        property string passage: picture.way

        height: Theme.rowHeightTwo
        clip: true

        Row {
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.space4
            visible: way.passage !== "open"

            Repeater {
                model: Math.ceil(Math.max(0, way.width) / (Theme.space8 + Theme.space4))
                Rectangle {
                    width: Theme.space8
                    height: Theme.ring
                    radius: 1
                    color: Theme.line
                }
            }
        }
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: Theme.ring
            visible: way.passage === "open"
            color: Theme.accent
        }
        Rectangle {
            anchors.centerIn: parent
            width: Theme.space24
            height: width
            radius: width / 2
            color: Theme.surface
            border.width: Theme.ring
            border.color: way.passage === "closed" ? Theme.line : mark.color

            Icon {
                id: mark
                anchors.centerIn: parent
                size: Theme.space12
                name: way.passage === "open" ? "checkmark" : way.passage === "faulty" ? "exclamationmark.triangle" : "lock"
                color: way.passage === "open" ? Theme.accent : way.passage === "faulty" ? Theme.warning : Theme.second
            }
        }
    }

    Stop {
        id: first
        iconName: "varnholt"
        text: Tr.t("helper-setup.picture.you")
    }
    Stop {
        id: second
        anchors.horizontalCenter: parent.horizontalCenter
        iconName: "lock.shield"
        text: Tr.t("helper-setup.picture.helper")
        lit: picture.way === "open"
    }
    Stop {
        id: third
        anchors.right: parent.right
        iconName: "gearshape"
        text: Tr.t("helper-setup.picture.system")
        lit: picture.way === "open"
    }
    Way {
        anchors.left: first.right
        anchors.leftMargin: -picture.reach
        anchors.right: second.left
        anchors.rightMargin: -picture.reach
    }
    // What is wrong is wrong on the way to the helper.
    Way {
        anchors.left: second.right
        anchors.leftMargin: -picture.reach
        anchors.right: third.left
        anchors.rightMargin: -picture.reach
        passage: picture.way === "open" ? "open" : "closed"
    }
}

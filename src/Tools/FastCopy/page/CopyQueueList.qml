import QtQuick
import Varnholt

// The copies of this window, in their order.
Column {
    id: list

    required property var copying

    signal reportWanted(string id)

    function newest(): var {
        return cards.count > 0 ? cards.itemAt(cards.count - 1) : null;
    }

    spacing: Theme.space8

    Item {
        width: parent.width
        height: Theme.fieldHeight

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: Tr.t("copy-page.queue")
            font: Theme.strong
            Accessible.role: Accessible.Heading
        }
        Row {
            anchors.right: parent.right
            height: parent.height
            spacing: Theme.space16

            Button {
                kind: "quiet"
                visible: list.copying.hasFinished
                text: Tr.t("copy-page.clear-finished")
                onClicked: list.copying.clearFinished()
            }
            CheckBox {
                anchors.verticalCenter: parent.verticalCenter
                text: Tr.t("copy-page.together")
                checked: list.copying.runTogether
                onClicked: list.copying.runTogether = checked
            }
        }
    }
    Repeater {
        id: cards
        model: list.copying.jobs

        CopyJobCard {
            width: list.width
            copying: list.copying
            onReportWanted: list.reportWanted(jobId)
        }
    }
}

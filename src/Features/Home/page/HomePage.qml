import QtQuick
import Varnholt

Page {
    id: page

    readonly property var home: App.model("home")
    property bool allTools: false
    // What this version lacks, folded away until asked for.
    property bool absentShown: false
    readonly property int columns: body.width > Theme.fourTilesWidth ? 4 : body.width > Theme.sheetWidth ? 3 : 2
    readonly property int firstTools: columns > 2 ? 2 * columns : 3 * columns

    title: home.greeting
    line: home.hostLine
    looks: Object.assign({
        "all-tools": () => { allTools = true; },
        absent: () => { absentShown = true; }
    }, mainCard.looks)
    scrolls: true
    settled: !mainCard.item || mainCard.item.settled

    Column {
        id: body
        width: parent.width
        spacing: Theme.space16

        // The main card and the disks side by side, what runs under the shorter of them; all below each other where
        // the window is narrow.
        Item {
            id: top
            readonly property bool stacked: body.width < Theme.sheetWidth || mainCard.file === ""
            readonly property int gap: Theme.space16
            readonly property bool runsRight: stacked || disks.implicitHeight < mainCard.implicitHeight
            readonly property real leftHeight: mainCard.implicitHeight + (runsRight ? 0 : gap + running.implicitHeight)
            readonly property real rightHeight: disks.implicitHeight + (runsRight ? gap + running.implicitHeight : 0)

            width: parent.width
            height: stacked ? leftHeight + gap + rightHeight : Math.max(leftHeight, rightHeight)

            Part {
                id: mainCard
                file: App.parts("home")[0] ?? ""
                given: ({page: page})
                width: top.stacked ? parent.width : Math.round((parent.width - top.gap) * Theme.mainShare)
                height: top.stacked || !top.runsRight ? implicitHeight : parent.height
            }
            DiskCard {
                id: disks
                x: top.stacked ? 0 : parent.width - width
                y: top.stacked ? mainCard.height + top.gap : 0
                width: top.stacked ? parent.width : parent.width - top.gap - mainCard.width
                height: top.runsRight ? implicitHeight : parent.height
                disks: page.home.disks
            }
            RunningCard {
                id: running
                readonly property Item above: top.runsRight ? disks : mainCard

                x: above.x
                y: above.y + above.height + top.gap
                width: above.width
                height: parent.height - y
                jobs: page.home.running
            }
        }

        Item {
            width: parent.width
            height: Theme.space12

            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: Tr.t("home.tools")
                font: Theme.label
                color: Theme.third
                Accessible.role: Accessible.Heading
            }
            Button {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                kind: "quiet"
                height: Theme.itemHeight
                visible: page.home.tools.length > page.firstTools
                text: page.allTools ? Tr.t("home.tools.fewer") : Tr.t("home.tools.all", {count: page.home.tools.length})
                onClicked: page.allTools = !page.allTools
            }
        }

        Grid {
            id: tiles
            width: parent.width
            columns: page.columns
            spacing: Theme.space12
            readonly property real tileWidth: (width - (columns - 1) * spacing) / columns

            Repeater {
                model: page.allTools ? page.home.tools : page.home.tools.slice(0, page.firstTools)

                Tile {
                    required property var modelData

                    width: tiles.tileWidth
                    height: page.columns > 3 ? Theme.tileHeight : Theme.tileHeightTall
                    text: modelData.name
                    iconName: modelData.icon
                    line: modelData.line
                    onClicked: page.navigate(modelData.id)
                }
            }
        }

        Button {
            visible: page.home.absentTools.length > 0
            x: -Theme.space8
            kind: "quiet"
            height: Theme.itemHeight
            iconName: page.absentShown ? "chevron.down" : "chevron.right"
            text: Tr.t("shell.absent.count", {count: page.home.absentTools.length})
            onClicked: page.absentShown = !page.absentShown
        }
        Grid {
            id: absent
            visible: page.absentShown
            width: parent.width
            columns: top.stacked ? 1 : page.columns - 1
            columnSpacing: Theme.space12

            Repeater {
                model: page.home.absentTools

                SidebarItem {
                    required property var modelData

                    width: (absent.width - (absent.columns - 1) * Theme.space12) / absent.columns
                    text: modelData.name
                    iconName: modelData.icon
                    available: false
                    onClicked: page.navigate(modelData.id)
                }
            }
        }

        RecentCard {
            width: parent.width
            runs: page.home.recent
            onOpened: page.navigate("activity")
        }
    }
}

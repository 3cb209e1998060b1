import QtQuick
import Varnholt

Page {
    id: page

    readonly property var home: App.model("home")
    readonly property var optimize: App.model("optimize")
    property bool allTools: false
    readonly property int columns: body.width > Theme.fourTilesWidth ? 4 : 3
    readonly property int firstTools: 2 * columns

    title: home.greeting
    line: home.hostLine
    scrolls: true
    settled: !optimize.isChecking && !optimize.isRunning

    function showState(name: string): bool {
        if (name === "all-tools")
            allTools = true;
        else if (name === "profile")
            profile.open();
        else if (name === "check")
            checks.open();
        else if (name === "run" || name === "result")
            optimize.run();
        else if (name !== "last" || optimize.lastText === "")
            return false;
        if (name === "last" || name === "result")
            last.open();
        return true;
    }

    // A tile has room for two lines.
    function firstSentence(text: string): string {
        const end = text.indexOf(". ");
        return end < 0 ? text : text.slice(0, end + 1);
    }

    Column {
        id: body
        width: parent.width
        spacing: Theme.space16

        Row {
            id: top
            width: parent.width
            spacing: Theme.space16

            OptimizeCard {
                id: optimizeCard
                width: Math.round((parent.width - parent.spacing) * Theme.mainShare)
                height: Math.max(implicitHeight, disks.implicitHeight)
                optimize: page.optimize
                onProfileWanted: profile.open()
                onCheckWanted: checks.open()
                onResultWanted: last.open()
            }
            DiskCard {
                id: disks
                width: parent.width - parent.spacing - optimizeCard.width
                height: page.home.disks.length > 1 ? optimizeCard.height : implicitHeight
                disks: page.home.disks
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
                text: page.allTools ? Tr.t("home.tools.fewer") : Tr.t("home.tools.all", {count: page.home.tools.length})
                onClicked: page.allTools = !page.allTools
            }
        }

        Grid {
            id: tiles
            width: parent.width
            columns: page.columns
            spacing: Theme.space12

            Repeater {
                model: page.allTools ? page.home.tools : page.home.tools.slice(0, page.firstTools)

                Tile {
                    required property var modelData

                    width: (tiles.width - (page.columns - 1) * tiles.spacing) / page.columns
                    height: page.columns > 3 ? Theme.tileHeight : Theme.tileHeightTall
                    text: modelData.name
                    iconName: modelData.icon
                    line: modelData.available ? page.firstSentence(modelData.line) : Tr.t("home.tool.absent")
                    available: modelData.available
                    onClicked: page.navigate(modelData.id)
                }
            }
        }

        Row {
            width: parent.width
            spacing: Theme.space16

            RunningCard {
                id: running
                width: (parent.width - parent.spacing) / 2
                height: Math.max(implicitHeight, recent.implicitHeight)
                jobs: page.home.running
            }
            RecentCard {
                id: recent
                width: running.width
                height: running.height
                runs: page.home.recent
                onOpened: page.navigate("activity")
            }
        }
    }

    OptimizeProfileSheet {
        id: profile
        optimize: page.optimize
    }
    OptimizeCheckSheet {
        id: checks
        optimize: page.optimize
        onHelperWanted: page.navigate("helper")
    }
    OptimizeResultSheet {
        id: last
        optimize: page.optimize
    }
    Connections {
        target: page.optimize
        function onSaid(text: string) { page.said(text); }
    }
}

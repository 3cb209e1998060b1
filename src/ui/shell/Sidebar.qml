import QtQuick
import QtQuick.Templates as T
import Varnholt

// Where one can go. Search and mode switch are tab stops; the entries are one together, with arrow keys inside.
Rectangle {
    id: sidebar

    property var fixed: []
    property var searched: []
    // Pages that are not in this version.
    property var absentPages: []
    property string current
    readonly property Item lastStop: settings

    signal picked(string id)
    // Picked in the search: the page gets the keyboard.
    signal found(string id)

    // What this version lacks is folded away until asked for.
    property bool unfolded: false
    readonly property var entries: {
        const rows = [];
        for (const section of App.shell.sections) {
            rows.push({id: "", title: section.title, icon: "", kind: "title"});
            for (const tool of section.tools)
                rows.push({id: tool.id, title: tool.name, icon: tool.icon, kind: "tool"});
        }
        if (absent.length > 0)
            rows.push({id: "", title: Tr.t("shell.absent.fold"), icon: "", kind: "fold"});
        return rows.concat(absent);
    }
    readonly property var absent: absentPages.map(page => ({id: page.id, title: page.title, icon: page.icon, kind: "absent"}))
        .concat(App.shell.absentTools.map(tool => ({id: tool.id, title: tool.name, icon: tool.icon, kind: "absent"})))
    readonly property string tabStop: {
        const shown = id => id === "settings" || fixed.some(page => page.id === id)
            || entries.some(entry => entry.id === id && (entry.kind === "tool" || unfolded));
        return shown(current) ? current : "home";
    }

    // As wide as the longest name of the language needs.
    readonly property real wanted: entries.concat(fixed).reduce((most, entry) =>
        Math.max(most, metrics.advanceWidth(entry.title)), 0) + 2 * Theme.space12 + 2 * Theme.space16 + Theme.space24

    FontMetrics {
        id: metrics
        font: Theme.medium
    }

    function focusSearch() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    function revealCurrent() {
        const item = stops().find(stop => stop.current);
        if (item && item !== settings && flick.height > item.height)
            flick.reveal(item);
    }

    onCurrentChanged: Qt.callLater(revealCurrent)
    onHeightChanged: Qt.callLater(revealCurrent)

    function stops(): var {
        const list = [];
        for (let i = 0; i < pages.count; ++i)
            list.push(pages.itemAt(i));
        for (let i = 0; i < tools.count; ++i)
            if (tools.itemAt(i).visible && tools.itemAt(i).item.enabled)
                list.push(tools.itemAt(i).item);
        list.push(settings);
        return list;
    }

    function step(by: int) {
        const list = stops();
        const at = list.findIndex(item => item.activeFocus);
        const next = list[at + by];
        if (at >= 0 && next !== undefined)
            next.forceActiveFocus(Qt.TabFocusReason);
    }

    color: Theme.sunken
    Accessible.role: Accessible.Pane
    Accessible.name: Tr.t("shell.sidebar")
    Keys.onUpPressed: step(-1)
    Keys.onDownPressed: step(1)

    Rectangle {
        anchors.right: parent.right
        width: Theme.hairline
        height: parent.height
        color: Theme.line
        z: 1
    }

    Label {
        id: appName
        x: Theme.space16 + Theme.space4
        y: Theme.space16 - 1
        text: Tr.t("shell.app")
        font: Theme.name
    }
    ToolSearch {
        id: search
        x: Theme.space12
        y: Theme.space32 + Theme.space16
        width: parent.width - 2 * Theme.space12 - Theme.hairline
        pages: sidebar.searched
        absentPages: sidebar.absentPages
        onPicked: id => sidebar.found(id)
    }

    Flickable {
        id: flick
        anchors.top: search.bottom
        anchors.topMargin: Theme.space12
        anchors.bottom: foot.top
        width: parent.width - Theme.hairline
        clip: true
        contentHeight: column.height + Theme.space12
        boundsBehavior: Flickable.StopAtBounds

        function reveal(item: Item) {
            const top = item.mapToItem(column, 0, 0).y;
            contentY = Math.max(0, Math.min(top, Math.max(contentY, top + item.height - height)));
        }

        T.ScrollBar.vertical: ScrollBar { quiet: true }

        Column {
            id: column
            x: Theme.space12
            width: parent.width - 2 * Theme.space12
            spacing: 2

            Repeater {
                id: pages
                model: sidebar.fixed

                SidebarItem {
                    required property var modelData
                    required property int index

                    width: column.width
                    shortcut: "Ctrl+" + (index + 1)
                    text: modelData.title
                    iconName: modelData.icon
                    current: sidebar.current === modelData.id
                    busy: App.shell.busy[modelData.id] ?? 0
                    activeFocusOnTab: activeFocus || sidebar.tabStop === modelData.id
                    onActiveFocusChanged: if (activeFocus) flick.reveal(this)
                    onClicked: sidebar.picked(modelData.id)
                }
            }

            Item {
                width: 1
                height: Theme.space12 - 2
            }
            SegmentedControl {
                width: parent.width
                stretch: true
                onSidebar: true
                name: Tr.t("shell.mode")
                options: [
                    {value: "node", title: Tr.t("shell.mode.node")},
                    {value: "network", title: Tr.t("shell.mode.network")}
                ]
                value: App.shell.mode
                onChosen: value => App.shell.setMode(value)
            }

            Repeater {
                id: tools
                model: sidebar.entries

                Loader {
                    id: entry
                    required property var modelData

                    width: column.width
                    visible: modelData.kind !== "absent" || sidebar.unfolded
                    sourceComponent: modelData.kind === "title" ? sectionTitle : modelData.kind === "fold" ? fold : tool

                    Component {
                        id: sectionTitle

                        Label {
                            enabled: false
                            leftPadding: Theme.space8
                            topPadding: Theme.space12 + 1
                            bottomPadding: Theme.space4
                            text: entry.modelData.title
                            font: Theme.labelStrong
                            color: Theme.third
                            Accessible.role: Accessible.Heading
                        }
                    }
                    Component {
                        id: fold

                        SidebarItem {
                            text: entry.modelData.title
                            iconName: sidebar.unfolded ? "chevron.down" : "chevron.right"
                            available: false
                            Accessible.role: Accessible.Button
                            Accessible.description: Tr.t("shell.absent.count", {count: sidebar.absent.length})
                            activeFocusOnTab: activeFocus
                            onActiveFocusChanged: if (activeFocus) flick.reveal(entry)
                            onClicked: sidebar.unfolded = !sidebar.unfolded
                        }
                    }
                    Component {
                        id: tool

                        SidebarItem {
                            text: entry.modelData.title
                            iconName: entry.modelData.icon
                            available: entry.modelData.kind === "tool"
                            current: sidebar.current === entry.modelData.id
                            busy: App.shell.busy[entry.modelData.id] ?? 0
                            activeFocusOnTab: activeFocus || sidebar.tabStop === entry.modelData.id
                            onActiveFocusChanged: if (activeFocus) flick.reveal(entry)
                            onClicked: sidebar.picked(entry.modelData.id)
                        }
                    }
                }
            }
        }
    }

    Item {
        id: foot
        anchors.bottom: parent.bottom
        width: parent.width - Theme.hairline
        height: Theme.itemHeight + 2 * Theme.space8 + Theme.hairline

        Rectangle {
            width: parent.width
            height: Theme.hairline
            color: Theme.line
        }
        SidebarItem {
            id: settings
            x: Theme.space12
            y: Theme.space8 + Theme.hairline
            width: parent.width - 2 * Theme.space12
            text: Tr.t("shell.page.settings")
            shortcut: "Ctrl+,"
            iconName: "gearshape"
            current: sidebar.current === "settings"
            activeFocusOnTab: activeFocus || sidebar.tabStop === "settings"
            onClicked: sidebar.picked("settings")
        }
    }
}

import QtQuick
import Varnholt

// What can go by category and by item; what is chosen is reviewed before anything is removed.
Page {
    id: page

    readonly property var junk: App.scanClean("system-junk")
    readonly property bool busy: junk.isScanning || junk.isCleaning
    readonly property bool filtered: junk.search !== "" || junk.category !== ""
    // It was looked and nothing can go: what chooses and removes has nothing to do.
    readonly property bool isEmpty: !busy && junk.stage !== "idle" && junk.itemCount === 0

    function refresh() {
        if (!busy)
            junk.scan();
    }

    title: App.shell.tool("system-junk").name
    line: Tr.t("cache.line")
    looks: ({
        selected: () => junk.itemCount > 0 && (junk.toggleSelectAll(), true),
        review: () => junk.itemCount > 0 && (junk.toggleSelectAll(), junk.review(), true)
    })
    settled: !busy
    footShown: !isEmpty
    Component.onCompleted: if (junk.stage === "idle" && !junk.isScanning) junk.scan()

    actions: Button {
        text: page.junk.isScanning ? Tr.t("shell.stop") : Tr.t("cache.scan-again")
        iconName: page.junk.isScanning ? "stop" : "arrow.triangle.2.circlepath"
        enabled: !page.junk.isCleaning
        onClicked: page.junk.isScanning ? page.junk.stop() : page.junk.scan()
    }

    ScanCleanSummary {
        id: summary
        width: parent.width
        junk: page.junk
    }
    ErrorNote {
        id: failure
        anchors.top: summary.bottom
        anchors.topMargin: visible ? Theme.space16 : 0
        width: parent.width
        height: visible ? implicitHeight : 0
        visible: page.junk.errorMessage !== ""
        title: Tr.t("cache.error")
        text: page.junk.errorMessage
        kept: Tr.t("cache.error.kept")
        actionText: Tr.t("cache.scan-again")
        onAction: page.junk.scan()
    }
    ScanCleanResult {
        id: result
        anchors.top: failure.bottom
        anchors.topMargin: visible ? Theme.space16 : 0
        width: parent.width
        height: visible ? implicitHeight : 0
        visible: page.junk.stage === "done"
        junk: page.junk
    }

    Item {
        id: tools
        anchors.top: result.bottom
        anchors.topMargin: visible ? Theme.space16 : 0
        width: parent.width
        height: visible ? Theme.fieldHeight : 0
        visible: !page.isEmpty
        enabled: page.junk.itemCount > 0 || page.filtered

        SearchField {
            id: search
            width: Math.min(Theme.fieldWidth, parent.width * 0.4)
            placeholderText: Tr.t("cache.search", {count: page.junk.itemCount})
            text: page.junk.search
            onTextChanged: page.junk.search = text
        }
        SegmentedControl {
            anchors.left: search.right
            anchors.leftMargin: Theme.space16
            anchors.verticalCenter: parent.verticalCenter
            // One category is all there is.
            visible: page.junk.categories.length > 1
            name: Tr.t("cache.category")
            options: [{value: "", title: Tr.t("cache.all")}].concat(
                page.junk.categories.map(category => ({value: category.name, title: category.title})))
            value: page.junk.category
            onChosen: value => page.junk.category = value
        }
        Label {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: parent.width > Theme.wideWidth && !recent.visible
            text: Tr.t("cache.largest-first")
            color: Theme.second
        }
        CheckBox {
            id: recent
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: page.junk.recentCount > 0
            text: Tr.t("cache.show-recent", {count: page.junk.recentCount})
            checked: page.junk.showsRecent
            // The view-model says whether it is checked; the box only asks.
            nextCheckState: () => checkState
            onClicked: page.junk.showsRecent = !page.junk.showsRecent
        }
    }

    ListTable {
        id: table
        anchors.top: tools.bottom
        anchors.topMargin: Theme.space16
        width: parent.width
        height: Math.min(parent.height - y, wanted)
        readonly property real wanted: Theme.rowHeight + Math.max(4, count) * Theme.rowHeightTwo + 2 * Theme.space4 + 1
        enabled: !page.junk.isCleaning
        name: page.title
        model: page.junk.items
        header: page.isEmpty ? null : heading
        delegate: ScanCleanRow { onToggled: id => page.junk.toggle(id) }
        onSelected: page.junk.toggle(list.currentItem.itemId)
        onOpened: page.junk.review()

        Component {
            id: heading
            ScanCleanHeader { junk: page.junk }
        }
        EmptyState {
            anchors.centerIn: parent
            anchors.verticalCenterOffset: page.isEmpty ? 0 : Theme.rowHeight / 2
            width: parent.width - 2 * Theme.space24
            visible: table.count === 0 && !page.busy && page.junk.errorMessage === "" && page.junk.stage !== "idle"
            iconName: page.filtered ? "magnifyingglass" : "checkmark"
            text: page.filtered ? Tr.t("cache.no-match") : Tr.t("cache.empty")
            detail: page.filtered ? "" : Tr.t("cache.empty.detail")
            actionText: page.filtered ? Tr.t("cache.show-all") : ""
            onAction: {
                page.junk.search = "";
                page.junk.category = "";
            }
        }
    }

    foot: ScanCleanFoot {
        anchors.fill: parent
        junk: page.junk
    }

    ScanCleanReview { junk: page.junk }
}

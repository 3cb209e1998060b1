import QtQuick
import QtQuick.Templates as T
import Varnholt

// Pairs of folders; what a sync of one would do is shown before anything happens.
Page {
    id: page

    readonly property var folderSync: App.model("folderSync")
    readonly property var chosen: folderSync.selected
    readonly property bool hasPairs: folderSync.pairCount > 0
    readonly property bool works: folderSync.phase === "planning" || folderSync.phase === "running"
    function goBack(): bool {
        if (works || (!folderSync.hasPlan && folderSync.phase !== "finished"))
            return false;
        folderSync.dismiss();
        return true;
    }

    function refresh() { folderSync.refresh(); }

    function actsOf(id: string): var {
        folderSync.select(id);
        const show = path => Qt.openUrlExternally(App.folderUrl(path));
        return [
            {text: Tr.t("sync-page.compare"), icon: "magnifyingglass", shortcut: "Return", enabled: folderSync.canSync && !works, act: () => folderSync.compare()},
            {text: Tr.t("sync-page.sync"), icon: "arrow.triangle.2.circlepath", shortcut: "Ctrl+R",
                enabled: folderSync.canSync && folderSync.busyText === "" && !works, act: () => folderSync.sync()},
            {text: chosen.watch ? Tr.t("sync-page.act.unwatch") : Tr.t("sync-page.watch"), icon: "eye", act: () => folderSync.setWatch(id, !chosen.watch)},
            {text: Tr.t("sync-page.act.source"), icon: "folder", act: () => show(chosen.sourcePath)},
            {text: Tr.t("sync-page.act.destination"), icon: "folder", act: () => show(chosen.destinationPath)},
            {text: Tr.t("sync-page.change"), icon: "gearshape", shortcut: "F2", act: () => form.edit(id, [])},
            {text: Tr.t("sync-page.remove"), icon: "trash", shortcut: "Del", enabled: !chosen.isRunning, act: () => removal.open()}
        ];
    }

    title: App.shell.tool("sync").name
    line: hasPairs ? folderSync.countText : Tr.t("sync-page.line")
    looks: ({
        form: () => form.edit("", []),
        chosen: () => hasPairs,
        plan: () => hasPairs && (folderSync.compare(), true),
        remove: () => hasPairs && (removal.open(), true)
    })
    settled: folderSync.phase !== "planning"
    footShown: hasPairs
    footRoom: bottom.implicitHeight

    actions: Button {
        visible: page.hasPairs
        iconName: "plus"
        text: Tr.t("sync-page.new")
        shortcut: "Ctrl+N"
        onClicked: form.edit("", [])
    }

    // The button that has these keys comes with the first pair.
    Shortcut {
        enabled: !page.hasPairs
        sequence: "Ctrl+N"
        onActivated: form.edit("", [])
    }
    EmptyState {
        anchors.centerIn: parent
        width: parent.width - 2 * Theme.space24
        visible: !page.hasPairs
        iconName: "arrow.triangle.2.circlepath"
        text: Tr.t("sync-page.empty")
        detail: Tr.t("sync-page.empty.detail")
        actionText: Tr.t("sync-page.empty.action")
        onAction: form.edit("", [])
    }

    ListTable {
        id: table
        width: page.width > Theme.fourTilesWidth ? Theme.inspectorWidth : Theme.fieldWidthMiddle + Theme.space16
        height: Math.min(parent.height, list.contentHeight + 3 * Theme.space4)
        visible: page.hasPairs
        name: page.title
        model: page.folderSync.pairs
        delegate: SyncRow {
            chosen: page.chosen.pairId === pairId
            acts: () => page.actsOf(pairId)
            onChosenChanged: if (chosen) table.currentIndex = index
            onClicked: page.folderSync.select(pairId)
            onDoubleClicked: form.edit(pairId, [])
        }
        onMoved: page.folderSync.select(list.currentItem.pairId)
        onSelected: page.folderSync.select(list.currentItem.pairId)
        onOpened: page.folderSync.compare()
        list.Keys.onDeletePressed: if (!page.chosen.isRunning) removal.open()
        list.Keys.onPressed: event => {
            if (event.key !== Qt.Key_F2)
                return;
            form.edit(page.chosen.pairId, []);
            event.accepted = true;
        }
    }

    // What a pair needs is read to its end in a small window too.
    Flickable {
        anchors.left: table.right
        anchors.leftMargin: Theme.space16
        anchors.right: parent.right
        height: parent.height
        visible: page.hasPairs
        contentWidth: width
        contentHeight: Math.max(height, need.visible ? need.y + need.height : 0)
        interactive: contentHeight > height
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollBar {}

        SyncFacts {
            id: facts
            width: parent.width
            height: implicitHeight
            folderSync: page.folderSync
            onChange: form.edit(page.chosen.pairId, [])
            onRemove: removal.open()
        }
        SyncNeed {
            id: need
            anchors.top: facts.bottom
            anchors.topMargin: visible ? Theme.space12 : 0
            width: parent.width
            height: visible ? implicitHeight : 0
            visible: (page.chosen.needTitle ?? "") !== "" && !page.works && !page.folderSync.hasPlan
                && page.folderSync.phase !== "finished" && !failure.visible
            pair: page.chosen
            onAct: what => what === "edit" ? form.edit(page.chosen.pairId, []) : page.folderSync.compare()
        }
        ErrorNote {
            id: failure
            anchors.top: need.bottom
            anchors.topMargin: visible ? Theme.space12 : 0
            width: parent.width
            height: visible ? implicitHeight : 0
            visible: page.folderSync.errorMessage !== ""
            title: Tr.t("sync-page.error")
            text: page.folderSync.errorMessage
            kept: Tr.t("sync-page.error.kept")
            actionText: Tr.t("sync-page.compare-again")
            onAction: page.folderSync.compare()
        }
        SyncResult {
            anchors.top: failure.bottom
            anchors.topMargin: Theme.space12
            width: parent.width
            height: Math.min(implicitHeight, parent.height - y)
            visible: page.folderSync.phase === "finished"
            folderSync: page.folderSync
        }
        SyncPlan {
            anchors.top: failure.bottom
            anchors.topMargin: Theme.space12
            anchors.bottom: parent.bottom
            width: parent.width
            visible: page.folderSync.phase !== "finished" && !failure.visible && !need.visible
            folderSync: page.folderSync
        }
    }

    DropArea {
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: drop => form.edit("", drop.urls.map(url => App.localPath(url)))
    }

    foot: SyncFoot {
        id: bottom
        anchors.fill: parent
        folderSync: page.folderSync
    }

    SyncForm {
        id: form
        folderSync: page.folderSync
        onSaved: table.list.forceActiveFocus(Qt.TabFocusReason)
    }
    ConfirmSheet {
        id: removal
        title: Tr.t("sync-page.remove.title", {title: page.chosen.title ?? ""})
        text: Tr.t("folder-sync.only-the-configuration-is-removed")
        confirmText: Tr.t("sync-page.remove")
        onCancelled: close()
        onConfirmed: {
            close();
            page.folderSync.remove(page.chosen.pairId);
        }
    }
    ConfirmSheet {
        visible: page.folderSync.confirmTrash.title !== undefined
        title: page.folderSync.confirmTrash.title ?? ""
        text: page.folderSync.confirmTrash.text ?? ""
        confirmText: Tr.t("sync-page.confirm.do")
        onCancelled: page.folderSync.decline()
        onConfirmed: page.folderSync.approve()

        Label {
            width: parent.width
            text: page.folderSync.planText
            font: Theme.strong
            wrapMode: Text.Wrap
        }
    }
    Connections {
        target: page.folderSync
        function onSaid(text: string) { page.said(text); }
    }
}

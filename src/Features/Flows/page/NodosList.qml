import QtQuick
import Varnholt

// Every flow in a line: what starts it, and how it went the last time.
FocusScope {
    id: pane

    required property var flows
    property string chosen

    signal opened(string id)
    signal runWanted(string id)
    signal said(string text)
    signal scriptsWanted

    function focusFlow(id: string) {
        table.focusRow(Math.max(0, flows.indexOf(id)));
        chosen = id;
    }

    function rename() {
        renaming.name = flows.facts(chosen).name;
        renaming.open();
    }

    function remove() { removing.open(); }

    function exportFlow() { exporting.open(); }

    function actsOf(id: string): var {
        chosen = id;
        const facts = flows.facts(id);
        const acts = [
            {text: Tr.t("nodes-page.open"), icon: "point.topleft.down.to.point.bottomright", shortcut: "Return", act: () => opened(id)},
            facts.running ? {text: Tr.t("shell.stop"), icon: "stop", shortcut: "Ctrl+.", act: () => flows.stop(id)}
                : {text: Tr.t("nodes-page.run"), icon: "play", shortcut: "Ctrl+R", act: () => runWanted(id)},
            {text: Tr.t("nodes-page.duplicate"), icon: "doc.on.doc.fill", shortcut: "Ctrl+D", act: () => focusFlow(flows.duplicate(id))},
            {text: Tr.t("nodes-page.export"), icon: "square.and.arrow.up", act: () => exportFlow()},
            {text: Tr.t("nodes-page.remove"), icon: "trash", shortcut: "Del", act: () => remove()}
        ];
        if (facts.from === "")
            acts.splice(2, 0, {text: Tr.t("nodes-page.rename.do"), icon: "character.cursor.ibeam", shortcut: "F2", act: () => rename()});
        return acts;
    }

    function offerActs(item: Item) {
        menu.active = true;
        menu.item.offer(actsOf(chosen), item, 0, 0);
    }

    Loader {
        id: menu
        active: false
        sourceComponent: ContextMenu {}
    }
    ErrorNote {
        id: damaged
        width: parent.width
        height: visible ? implicitHeight : 0
        visible: pane.flows.damagedText !== ""
        title: Tr.t("nodes-page.damaged")
        text: pane.flows.damagedText
        kept: Tr.t("nodes-page.damaged.kept")
    }
    ListTable {
        id: table
        anchors.top: damaged.bottom
        anchors.topMargin: damaged.visible ? Theme.space16 : 0
        width: parent.width
        height: Math.min(scripts.y - y - Theme.space12, count === 0 ? Infinity : list.contentHeight + 2 * Theme.space4 + 2)
        name: Tr.t("shell.page.nodos")
        model: pane.flows.flows
        list.focus: true
        delegate: NodosRow {
            chosen: pane.chosen === flowId
            acts: () => pane.actsOf(flowId)
            onClicked: pane.chosen = flowId
            onDoubleClicked: pane.opened(flowId)
        }
        onSelected: pane.chosen = list.currentItem.flowId
        onOpened: pane.opened(list.currentItem.flowId)
        onMoved: pane.chosen = list.currentItem.flowId
        list.Keys.onDeletePressed: if (pane.chosen !== "") pane.remove()

        Keys.onPressed: event => {
            if (event.key === Qt.Key_F2 && pane.chosen !== "")
                pane.rename();
            else if (event.key === Qt.Key_D && event.modifiers === Qt.ControlModifier && pane.chosen !== "")
                pane.focusFlow(pane.flows.duplicate(pane.chosen));
            else
                return;
            event.accepted = true;
        }

        EmptyState {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.space24
            visible: table.count === 0
            iconName: "point.topleft.down.to.point.bottomright"
            text: Tr.t("nodes-page.empty")
            detail: Tr.t("nodes-page.empty.detail")
            actionText: Tr.t("nodes-page.new")
            onAction: pane.opened(pane.flows.create())
        }
    }

    Button {
        id: scripts
        anchors.bottom: parent.bottom
        kind: "quiet"
        iconName: "terminal"
        text: Tr.t("scripts.open")
        onClicked: pane.scriptsWanted()
    }

    ConfirmSheet {
        id: renaming
        property alias name: nameField.text
        title: Tr.t("nodes-page.rename")
        confirmText: Tr.t("nodes-page.rename.do")
        canConfirm: nameField.text.trim() !== ""
        firstField: nameField
        onCancelled: close()
        onConfirmed: if (pane.flows.rename(pane.chosen, name)) close()
        onOpened: nameField.selectAll()

        Field {
            id: nameField
            width: parent.width
            name: Tr.t("nodes-page.name")
        }
    }
    ConfirmSheet {
        id: removing
        title: Tr.t("nodes-page.remove.title", {name: pane.flows.facts(pane.chosen).name ?? ""})
        text: Tr.t("nodes-page.remove.text")
        confirmText: Tr.t("nodes-page.remove.do")
        onCancelled: close()
        onConfirmed: {
            close();
            const at = table.currentIndex;
            if (pane.flows.remove(pane.chosen)) {
                pane.chosen = "";
                table.focusRow(Math.min(at, table.count - 1));
            }
        }
    }
    ConfirmSheet {
        id: exporting
        property string file
        title: Tr.t("nodes-page.export.title")
        text: Tr.t("nodes-page.export.text", {file: file.slice(file.lastIndexOf("/") + 1)})
        confirmText: Tr.t("nodes-page.export.do")
        onAboutToShow: file = pane.flows.exportPath(pane.chosen, folder.path)
        onCancelled: close()
        onConfirmed: {
            if (!pane.flows.exportFile(pane.chosen, file))
                return;
            close();
            pane.said(Tr.t("nodes-page.export.done", {path: file}));
        }

        PathField {
            id: folder
            width: parent.width
            name: Tr.t("nodes-page.export.folder")
            path: App.documentsFolder
            onPathChanged: exporting.file = pane.flows.exportPath(pane.chosen, path)
        }
    }
}

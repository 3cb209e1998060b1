import QtQuick
import Varnholt

// The flows: their list, and one of them on its canvas.
Page {
    id: page

    readonly property var flows: App.model("flows")
    readonly property var editor: App.model("flowEditor")
    property string chosen

    function openFlow(id: string): bool {
        if (!editor.open(id))
            return false;
        chosen = id;
        return true;
    }

    function runFlow(id: string) {
        asking.run(flows.neededValues(id), values => flows.run(id, values));
    }

    function closeFlow() {
        editor.close();
        list.item.focusFlow(chosen);
    }

    function goBack(): bool {
        if (!editor.isOpen)
            return false;
        if (editor.connectFrom !== "")
            editor.cancelConnect();
        else if (editor.selectedNode !== "" || editor.selectedEdge !== "")
            canvas.item.clear();
        else
            closeFlow();
        return true;
    }

    title: editor.isOpen ? editor.name : Tr.t("shell.page.nodos")
    line: editor.isOpen ? editor.line : Tr.t("nodes-page.line")
    looks: ({
        chosen: () => flows.count > 0 && (list.item.focusFlow(flows.flows.data(flows.flows.index(0, 0), Qt.UserRole)), true),
        editor: () => flows.count > 0 && openFlow(flows.flows.data(flows.flows.index(0, 0), Qt.UserRole))
    })
    footShown: !editor.isOpen && flows.count > 0
    Component.onDestruction: editor.close()

    actions: [
        Button {
            visible: !page.editor.isOpen
            iconName: "square.and.arrow.down"
            text: Tr.t("nodes-page.import")
            onClicked: {
                opener.active = true;
                opener.item.open();
            }
        },
        Button {
            visible: !page.editor.isOpen
            kind: "main"
            iconName: "plus"
            text: Tr.t("nodes-page.new")
            shortcut: "Ctrl+N"
            onClicked: page.openFlow(page.flows.create())
        },
        Button {
            visible: page.editor.isOpen
            text: page.editor.isPlanned ? Tr.t("nodes-page.dry-run.end") : Tr.t("nodes-page.dry-run")
            onClicked: page.editor.toggleDryRun()
        },
        Button {
            visible: page.editor.isOpen
            kind: page.editor.isRunning ? "plain" : "main"
            iconName: page.editor.isRunning ? "stop" : "bolt"
            text: page.editor.isRunning ? Tr.t("shell.stop") : Tr.t("nodes-page.run")
            shortcut: page.editor.isRunning ? "Ctrl+." : "Ctrl+R"
            onClicked: page.editor.isRunning ? page.editor.stop() : asking.run(page.editor.neededValues(), values => page.editor.run(values))
        }
    ]

    Loader {
        id: list
        anchors.fill: parent
        visible: !page.editor.isOpen
        focus: visible
        sourceComponent: NodosList {
            flows: page.flows
            onOpened: id => page.openFlow(id)
            onRunWanted: id => page.runFlow(id)
            onChosenChanged: page.chosen = chosen
            onSaid: text => page.said(text)
            onScriptsWanted: page.navigate("scripts")
        }
    }
    Loader {
        id: canvas
        anchors.fill: parent
        active: page.editor.isOpen
        focus: active
        sourceComponent: NodosEditor {
            editor: page.editor
            onLeave: page.closeFlow()
        }
        onLoaded: item.forceActiveFocus(Qt.TabFocusReason)
    }

    foot: NodosFoot {
        anchors.fill: parent
        flows: page.flows
        flowId: page.chosen
        onOpened: page.openFlow(page.chosen)
        onRun: page.runFlow(page.chosen)
        onCopied: id => list.item.focusFlow(id)
        onRenaming: list.item.rename()
        onRemoving: list.item.remove()
        onExporting: list.item.exportFlow()
        onMoreWanted: button => list.item.offerActs(button)
    }

    NodosRunSheet {
        id: asking
    }
    Loader {
        id: opener
        active: false
        sourceComponent: FileChooser {
            path: App.documentsFolder
            nameFilters: [Tr.t("nodes-page.import.files")]
            onChosen: url => {
                const made = page.flows.importFile(url.toString());
                if (made !== "")
                    list.item.focusFlow(made);
            }
        }
    }
    Connections {
        target: page.flows
        function onMessageChanged() { if (page.flows.message !== "") page.said(page.flows.message); }
    }
    Connections {
        target: page.editor
        function onMessageChanged() { if (page.editor.message !== "") page.said(page.editor.message); }
    }
}

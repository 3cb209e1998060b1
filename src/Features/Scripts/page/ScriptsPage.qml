import QtQuick
import Varnholt

// The saved scripts beside the one that is being written; tried here, used by flows.
Page {
    id: page

    readonly property var scripts: App.model("scripts")
    readonly property bool isSaved: scripts.current !== ""

    function refresh() { scripts.refresh(); }

    title: Tr.t("scripts.title")
    line: Tr.t("scripts.line")
    looks: ({
        new: () => scripts.create(),
        open: () => table.count > 0 && (scripts.open(scripts.scripts[0].name), true),
        remove: () => table.count > 0 && (scripts.open(scripts.scripts[0].name), removal.open(), true)
    })
    settled: !scripts.isRunning

    actions: Button {
        iconName: "plus"
        text: Tr.t("scripts.new")
        shortcut: "Ctrl+N"
        onClicked: {
            page.scripts.create();
            editor.item.focusName();
        }
    }

    ListTable {
        id: table
        width: Theme.fieldWidth
        height: parent.height
        visible: count > 0
        name: page.title
        model: page.scripts.scripts
        delegate: TableRow {
            id: row
            required property var modelData
            readonly property string scriptName: modelData.name

            name: modelData.name + (modelData.isChanged ? ", " + Tr.t("scripts.changed") : "")
            chosen: page.isSaved && page.scripts.current === scriptName
            onClicked: page.scripts.open(scriptName)
            acts: () => {
                const here = act => () => {
                    page.scripts.open(scriptName);
                    act();
                };
                return [
                    {text: Tr.t("scripts.edit"), shortcut: "Return", act: here(() => editor.item.focusBody())},
                    {text: Tr.t("scripts.run"), icon: "play", shortcut: "Ctrl+R", enabled: !page.scripts.isRunning,
                        act: here(() => page.scripts.run())},
                    {text: Tr.t("scripts.remove"), icon: "trash", act: here(() => removal.open())}
                ];
            }

            Column {
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: row.scriptName
                    elide: Text.ElideMiddle
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    text: row.modelData.isChanged ? Tr.t("scripts.changed") : row.modelData.line
                    font: Theme.label
                    color: row.modelData.isChanged ? Theme.accent : Theme.second
                    Accessible.ignored: true
                }
            }
        }
        onSelected: page.scripts.open(list.currentItem.scriptName)
        onOpened: {
            page.scripts.open(list.currentItem.scriptName);
            editor.item.focusBody();
        }
    }

    Card {
        anchors.left: table.visible ? table.right : parent.left
        anchors.leftMargin: table.visible ? Theme.space16 : 0
        anchors.right: parent.right
        height: parent.height

        EmptyState {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.space24
            visible: !page.scripts.isOpen
            iconName: "terminal"
            text: table.count === 0 ? Tr.t("scripts.empty") : Tr.t("scripts.none-open")
            detail: table.count === 0 ? Tr.t("scripts.empty.detail") : ""
            actionText: table.count === 0 ? Tr.t("scripts.empty.action") : ""
            onAction: {
                page.scripts.create();
                editor.item.focusName();
            }
        }
        ErrorNote {
            anchors.bottom: parent.bottom
            width: parent.width
            visible: !page.scripts.isOpen && page.scripts.message !== ""
            title: page.scripts.message
        }
        Loader {
            id: editor
            anchors.fill: parent
            active: page.scripts.isOpen
            sourceComponent: ScriptEditor {
                scripts: page.scripts
                onRemove: removal.open()
            }
        }
    }

    ConfirmSheet {
        id: removal
        title: Tr.t("scripts.remove.title", {name: page.scripts.current})
        text: Tr.t("scripts.remove.text")
        confirmText: Tr.t("scripts.remove.confirm")
        onCancelled: close()
        onConfirmed: {
            const gone = page.scripts.current;
            close();
            page.scripts.remove();
            if (!page.scripts.isOpen)
                page.said(Tr.t("scripts.removed", {name: gone}));
        }
    }
}

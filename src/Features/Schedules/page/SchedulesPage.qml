import QtQuick
import Varnholt

// What runs by itself: when it did, when it will, and the switch.
Page {
    id: page

    readonly property var schedules: App.model("schedules")
    readonly property var chosen: schedules.selected
    readonly property bool isChosen: chosen.taskId !== undefined
    readonly property bool isRunning: schedules.runningTitle !== ""

    function edit(id: string) {
        form.taskId = id;
        form.open();
    }

    function change() {
        if (!isChosen)
            return;
        if (chosen.isFlow)
            page.openFlow(chosen.flowId);
        else
            edit(chosen.taskId);
    }

    function openFlow(id: string) {
        if (App.model("flowEditor").open(id))
            page.navigate("nodos");
        else
            page.said(Tr.t("schedules.flow-gone"));
    }

    function goBack(): bool {
        if (!isChosen)
            return false;
        schedules.select("");
        return true;
    }

    function refresh() { schedules.refresh(); }

    title: Tr.t("shell.page.schedules")
    line: schedules.leadText
    looks: ({
        new: () => edit(""),
        maintenance: () => { edit(""); form.put("action", "maintenance"); },
        selected: () => table.count > 0 && (table.focusRow(0), true),
        edit: () => table.count > 0 && (table.focusRow(0), change(), true),
        remove: () => table.count > 0 && (table.focusRow(0), removal.open(), true)
    })
    footShown: table.count > 0

    actions: Button {
        kind: "main"
        iconName: "plus"
        text: Tr.t("schedules.new")
        shortcut: "Ctrl+N"
        onClicked: page.edit("")
    }

    Item {
        id: news
        width: parent.width
        // Its room is kept while there are schedules.
        visible: table.count > 0 || page.isRunning || page.schedules.message !== ""
        height: visible ? Theme.fieldHeight : 0

        Label {
            anchors.left: parent.left
            anchors.right: stop.left
            anchors.rightMargin: Theme.space16
            anchors.verticalCenter: parent.verticalCenter
            text: page.isRunning ? Tr.t("schedules.doing", {title: page.schedules.runningTitle, what: page.schedules.progressText})
                : page.schedules.message !== "" ? page.schedules.message
                : table.count > 0 ? page.schedules.countText : ""
            color: page.isRunning ? Theme.text : Theme.second
            elide: Text.ElideMiddle
        }
        Button {
            id: stop
            anchors.right: parent.right
            visible: page.isRunning
            iconName: "stop"
            text: Tr.t("shell.stop")
            onClicked: page.schedules.stop()
        }
        Bar {
            anchors.bottom: parent.bottom
            anchors.bottomMargin: -Theme.space8
            width: parent.width
            height: Theme.barHeightThin
            visible: page.isRunning
            value: -1
            name: page.schedules.runningTitle
        }
    }

    ListTable {
        id: table
        anchors.top: news.bottom
        anchors.topMargin: news.visible ? Theme.space16 : 0
        width: parent.width
        height: Math.min(parent.height - y, wanted)
        readonly property real wanted: count === 0 ? parent.height - y
            : Theme.rowHeight + Math.max(4, count) * Theme.rowHeightTwo + 2 * Theme.space4 + 1
        readonly property bool wide: width > Theme.wideWidth
        name: page.title
        model: page.schedules.tasks
        header: count > 0 ? heading : null
        delegate: ScheduleRow {
            wide: table.wide
            progressText: page.schedules.progressText
            chosen: page.chosen.taskId === taskId
            onChosenChanged: if (chosen) table.list.currentIndex = index
            onClicked: page.schedules.select(taskId)
            onDoubleClicked: page.change()
            acts: () => {
                page.schedules.select(taskId);
                return [
                    isRunning ? {text: Tr.t("shell.stop"), icon: "stop", shortcut: "Ctrl+R", act: () => page.schedules.stop()}
                        : {text: Tr.t("schedules.run-now"), icon: "play", shortcut: "Ctrl+R", enabled: !page.isRunning,
                            act: () => page.schedules.runNow(taskId)},
                    {text: isFlow ? Tr.t("schedules.open-flow") : Tr.t("schedules.edit"), shortcut: "Return", act: () => page.change()},
                    {text: isEnabled ? Tr.t("schedules.turn-off") : Tr.t("schedules.turn-on"), shortcut: "Space",
                        act: () => page.schedules.setEnabled(taskId, !isEnabled)},
                    {text: Tr.t("schedules.remove"), icon: "trash", shortcut: "Del", enabled: !isFlow, act: () => removal.open()}
                ];
            }
            onSwitched: on => page.schedules.setEnabled(taskId, on)
        }
        onSelected: page.schedules.setEnabled(list.currentItem.taskId, !list.currentItem.isEnabled)
        onMoved: page.schedules.select(list.currentItem.taskId)
        onOpened: {
            page.schedules.select(list.currentItem.taskId);
            page.change();
        }
        Keys.onDeletePressed: if (page.isChosen && !page.chosen.isFlow) removal.open()

        Component {
            id: heading
            ScheduleHeader {
                schedules: page.schedules
                wide: table.wide
            }
        }
        EmptyState {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.space24
            visible: table.count === 0
            iconName: "clock"
            text: Tr.t("schedules.empty")
            detail: Tr.t("schedules.empty.detail")
            actionText: Tr.t("schedules.empty.action")
            onAction: page.edit("")
        }
    }

    foot: ScheduleFoot {
        anchors.fill: parent
        schedules: page.schedules
        onChange: page.change()
        onRemove: removal.open()
    }

    ScheduleForm {
        id: form
        schedules: page.schedules
        onFlowsWanted: page.navigate("nodos")
        onSaved: table.list.forceActiveFocus(Qt.TabFocusReason)
    }
    ConfirmSheet {
        id: removal
        title: Tr.t("schedules.remove.title", {title: page.chosen.title ?? ""})
        text: Tr.t("schedules.remove.text")
        confirmText: Tr.t("schedules.remove")
        onCancelled: close()
        onConfirmed: {
            const gone = page.chosen.title;
            close();
            page.schedules.remove(page.chosen.taskId);
            page.offered(Tr.t("schedules.removed", {title: gone}), Tr.t("schedules.undo"), () => App.model("schedules").undoRemove());
        }
    }
    Shortcut {
        sequences: [StandardKey.Undo]
        onActivated: page.schedules.undoRemove()
    }
    Connections {
        target: page.schedules
        function onSaid(text: string) { page.said(text); }
    }
}

import QtQuick
import Varnholt

// Asks before the window goes while a task or a flow runs.
ConfirmSheet {
    id: sheet

    readonly property var running: App.automation.running

    title: Tr.t("shell.closing.title", {count: running.length})
    text: Tr.t("shell.closing.text", {titles: running.join(", ")})
    confirmText: Tr.t("shell.closing.stop")
    cancelText: Tr.t("shell.closing.keep")
    forGood: true
    onCancelled: close()
    // What ran has ended by itself: nothing is left to ask.
    onRunningChanged: if (running.length === 0) close()
}

import QtQml
import QtQuick
import QtQuick.Window
import Varnholt

// Sidebar and the current page; only that page exists.
FocusScope {
    id: shell

    property string pageId
    property var history: []
    readonly property Page page: loader.item
    readonly property string pageTitle: page ? page.title : ""
    readonly property bool settled: loader.status === Loader.Ready && page.settled

    function replace(id: string) {
        pageId = id;
        loader.setSource(pages.source(id), pages.properties(id));
    }

    // False for a page that does not exist.
    function open(id: string): bool {
        const target = pages.resolve(id);
        if (target === "")
            return false;
        if (target !== pageId) {
            if (pageId !== "")
                history = history.concat(pageId);
            replace(target);
        }
        return true;
    }

    function pageIds(): var { return pages.ids(); }

    function goBack() {
        if (page && page.goBack())
            return;
        if (history.length === 0)
            return;
        const last = history[history.length - 1];
        history = history.slice(0, -1);
        replace(last);
    }

    Keys.onEscapePressed: goBack()

    PageMap { id: pages }

    // A sheet that closes, or a button that goes with what it did, leaves the keyboard to the window: it comes back
    // to where it was.
    Connections {
        target: shell.Window.window
        function onActiveFocusItemChanged() {
            if (shell.Window.activeFocusItem === shell.parent)
                shell.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    Shortcut {
        sequences: ["Ctrl+F", "Ctrl+K"]
        onActivated: sidebar.focusSearch()
    }
    Shortcut {
        sequence: "F5"
        onActivated: if (shell.page) shell.page.refresh()
    }
    Shortcut {
        sequences: [StandardKey.Preferences, "Ctrl+,"]
        onActivated: shell.open("settings")
    }
    Instantiator {
        model: pages.fixed

        Shortcut {
            required property var modelData
            required property int index

            sequence: "Ctrl+" + (index + 1)
            onActivated: shell.open(modelData.id)
        }
    }

    Sidebar {
        id: sidebar
        width: Math.max(Theme.sidebarWidth, wanted)
        height: parent.height
        fixed: pages.fixed
        searched: pages.all
        absentPages: pages.absent
        current: pages.entryOf(shell.pageId)
        onPicked: id => shell.open(id)
        onFound: id => {
            shell.open(id);
            sidebar.lastStop.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
        }
    }

    Loader {
        id: loader
        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height
        focus: true
    }
    Connections {
        target: shell.page
        function onNavigate(id: string) { shell.open(id); }
        function onSaid(text: string) { toast.show(text); }
        function onOffered(text: string, word: string, act: var) { toast.offer(text, word, act); }
    }
    Connections {
        target: App.automation
        function onSaid(text: string) { toast.show(text); }
    }

    Toast {
        id: toast
        anchors.fill: loader
    }
}

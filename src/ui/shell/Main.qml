import QtQuick
import QtQuick.Window
import Varnholt

Window {
    id: window

    property alias page: shell.pageId
    readonly property Item pageItem: shell.page

    width: Theme.windowWidth
    height: Theme.windowHeight
    minimumWidth: Theme.windowMinimumWidth
    minimumHeight: Theme.windowMinimumHeight
    title: shell.pageTitle === "" ? Tr.t("shell.app") : shell.pageTitle + " — " + Tr.t("shell.app")
    color: Theme.background

    // True once the page is there and has nothing under way.
    readonly property bool settled: shell.settled

    function open(id: string): bool { return shell.open(id); }
    function pageIds(): var { return shell.pageIds(); }
    function come() {
        if (visibility === Window.Minimized)
            showNormal();
        show();
        raise();
        requestActivate();
    }

    onClosing: event => {
        event.accepted = App.automation.running.length === 0;
        if (!event.accepted)
            closing.open();
    }

    Shell {
        id: shell
        anchors.fill: parent
        focus: true
    }
    ClosingSheet {
        id: closing
        onConfirmed: {
            close();
            App.automation.stop();
            Qt.exit(0);
        }
    }
}

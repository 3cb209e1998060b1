import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Varnholt

// What every page is: a title, a line of what it is, at most two buttons at the top right, content, and a bar
// at the foot for what acts on a selection. A page that scrolls as a whole says so; others fill the height.
FocusScope {
    id: page

    property string title
    property string line
    property bool scrolls: false
    property alias actions: buttons.data
    property alias foot: footContent.data
    property bool footShown: false
    // As high as it has to be for words that are never cut.
    property real footRoom: Theme.footHeight
    default property alias content: body.data
    readonly property int margin: Theme.space32

    // A page that has nothing under way; a picture of it may be taken.
    property bool settled: true

    // What of the page can be pictured and tested beside its first sight, each a name and what a person would do for it;
    // false where there is nothing to show. None runs, writes or removes anything.
    property var looks: ({})

    // Asks the shell for another page, and to say something in passing.
    signal navigate(string id)
    signal said(string text)
    // The same, with a button: its word and what it does.
    signal offered(string text, string word, var act)

    // What F5 does.
    function refresh() {}

    // What Escape does before the shell goes back; true when it was used up.
    function goBack(): bool {
        return false;
    }

    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: title

    Item {
        id: head
        x: page.margin
        y: Theme.space24
        width: parent.width - 2 * page.margin
        height: words.implicitHeight

        Column {
            id: words
            width: parent.width - (buttons.width > 0 ? buttons.width + Theme.space24 : 0)
            spacing: Theme.space4

            Label {
                width: parent.width
                text: page.title
                font: Theme.title
                Accessible.role: Accessible.Heading
            }
            Label {
                width: parent.width
                text: page.line
                color: Theme.second
                wrapMode: Text.Wrap
            }
        }
        Row {
            id: buttons
            anchors.right: parent.right
            y: Theme.space8 + 1
            spacing: Theme.space16
        }
    }

    Flickable {
        id: flick
        anchors.top: head.bottom
        // The ring of what stands at the top needs room inside the clip.
        anchors.topMargin: Theme.space16 - body.y
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: bar.top
        clip: true
        interactive: page.scrolls
        boundsBehavior: Flickable.StopAtBounds
        contentHeight: page.scrolls ? body.y + body.childrenRect.height + Theme.space24 : height

        // The keyboard never leads to what cannot be seen.
        function reveal(item: Item) {
            if (!page.scrolls || !item || !page.activeFocus || !isInside(item))
                return;
            const top = item.mapToItem(body, 0, 0).y - Theme.space16;
            const bottom = top + item.height + 2 * Theme.space16;
            contentY = Math.max(0, Math.min(top, Math.max(contentY, bottom - height)));
        }

        function isInside(item: Item): bool {
            for (let up = item; up; up = up.parent)
                if (up === body)
                    return true;
            return false;
        }

        Connections {
            target: page.Window.window
            function onActiveFocusItemChanged() { flick.reveal(page.Window.activeFocusItem); }
        }

        T.ScrollBar.vertical: ScrollBar { visible: page.scrolls && size < 1 }

        Item {
            id: body
            x: page.margin
            y: Theme.space4
            width: flick.width - 2 * page.margin
            height: flick.height - y - Theme.space24
        }
    }

    Rectangle {
        id: bar
        anchors.bottom: parent.bottom
        width: parent.width
        height: page.footShown ? page.footRoom : 0
        visible: page.footShown
        color: Theme.surface

        Rectangle {
            width: parent.width
            height: Theme.hairline
            color: Theme.line
        }
        Item {
            id: footContent
            anchors.fill: parent
            anchors.leftMargin: page.margin
            anchors.rightMargin: page.margin
        }
    }
}

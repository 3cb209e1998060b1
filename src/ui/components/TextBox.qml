import QtQuick
import QtQuick.Templates as T
import Varnholt

// Several lines of text; code or what a program printed in letters of one width. Tab goes on to the next control.
Rectangle {
    id: box

    property alias text: area.text
    property alias readOnly: area.readOnly
    property alias placeholderText: area.placeholderText
    readonly property alias input: area
    property string name
    property bool code: false
    // Stays at the end while text is added there.
    property bool follows: false
    // As high as its text.
    property bool grows: false

    signal edited

    function focusText() {
        area.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: Theme.listWidth
    implicitHeight: grows ? Math.max(Theme.fieldHeight, flick.contentHeight + 2 * Theme.ring) : Theme.noticeHeight
    radius: Theme.radiusField
    color: Theme.dark || readOnly ? Theme.background : Theme.surface
    border.width: area.activeFocus ? Theme.ring : Theme.hairline
    border.color: area.activeFocus ? Theme.accent : Theme.line

    Flickable {
        id: flick
        anchors.fill: parent
        anchors.margins: Theme.ring
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: width
        onContentHeightChanged: if (box.follows) contentY = Math.max(0, contentHeight - height)

        T.TextArea.flickable: T.TextArea {
            id: area
            leftPadding: Theme.space8
            rightPadding: Theme.space8 + Theme.scrollBarWidth
            topPadding: Theme.space8 - Theme.ring
            bottomPadding: topPadding
            font: box.code ? Theme.code : Theme.body
            color: enabled ? Theme.text : Theme.disabled
            placeholderTextColor: Theme.third
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentInk
            selectByMouse: true
            wrapMode: box.code && !readOnly ? TextEdit.WrapAnywhere : TextEdit.Wrap
            textFormat: TextEdit.PlainText
            activeFocusOnTab: true
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            Accessible.name: box.name
            onTextChanged: if (activeFocus) box.edited()

            Label {
                x: area.leftPadding
                y: area.topPadding
                visible: area.length === 0 && area.preeditText === ""
                text: area.placeholderText
                font: area.font
                color: area.placeholderTextColor
                Accessible.ignored: true
            }
        }
        T.ScrollBar.vertical: ScrollBar {}
    }
}

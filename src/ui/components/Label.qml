import QtQuick
import Varnholt

// Any text of the window. Plain text always: a file's name is never markup.
Text {
    font: Theme.body
    color: Theme.text
    textFormat: Text.PlainText
    elide: Text.ElideRight
    // A name in right-to-left letters stands where the others stand.
    horizontalAlignment: Text.AlignLeft
    verticalAlignment: Text.AlignVCenter
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}

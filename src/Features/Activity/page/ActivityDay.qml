import QtQuick
import Varnholt

// The day above its runs.
Label {
    required property string section

    height: Theme.itemHeight
    leftPadding: Theme.space16
    topPadding: Theme.space8
    text: section
    font: Theme.labelStrong
    color: Theme.second
    Accessible.role: Accessible.Heading
}

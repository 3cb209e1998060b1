pragma Singleton
import QtQuick

// The widths that the heading and the rows of the list of schedules share.
QtObject {
    readonly property int icon: 28
    readonly property int last: 168
    readonly property int lastNarrow: 28
    readonly property int next: 168
    readonly property int on: 56
}

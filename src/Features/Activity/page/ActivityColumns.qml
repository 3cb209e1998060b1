pragma Singleton
import QtQuick

// The widths that header and rows of the run table share.
QtObject {
    readonly property int icon: 32
    readonly property int trigger: 132
    readonly property int files: 64
    readonly property int size: 84
    readonly property int duration: 84
    readonly property int time: 64
}

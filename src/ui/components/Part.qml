import QtQuick
import Varnholt

// What a feature puts into another page, by the name of its file; nothing where there is none.
Loader {
    property string file
    // What the place gives it, by the names of its properties.
    property var given: ({})
    readonly property var looks: item ? item.looks : {}

    Component.onCompleted: if (file !== "")
        setSource(Qt.resolvedUrl("../pages/" + file + ".qml"), given)
}

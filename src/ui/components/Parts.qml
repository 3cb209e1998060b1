import QtQuick
import Varnholt

// All that features put into a place of this page, one after the other.
Repeater {
    id: parts

    required property string place
    property var given: ({})
    // As wide as they want to be where none is said.
    property real partWidth: -1

    // Those of all parts together.
    function looks(): var {
        const all = {};
        for (let each = 0; each < count; ++each)
            Object.assign(all, itemAt(each).looks);
        return all;
    }

    model: App.parts(place)

    Part {
        required property string modelData

        file: modelData
        given: parts.given
        width: parts.partWidth < 0 ? implicitWidth : parts.partWidth
    }
}

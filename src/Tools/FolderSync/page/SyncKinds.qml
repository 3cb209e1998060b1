import QtQuick
import Varnholt

// The shape and the colour that each kind of change has on the page of the pairs.
QtObject {
    function icon(kind: string): string {
        switch (kind) {
        case "copy": return "plus";
        case "update": return "arrow.clockwise";
        case "delete": return "trash";
        default: return "folder";
        }
    }

    function color(kind: string): color {
        switch (kind) {
        case "copy": return Theme.accent;
        case "update": return Theme.seriesColor(3);
        case "delete": return Theme.seriesColor(5);
        default: return Theme.second;
        }
    }
}

pragma Singleton
import QtQuick
import Varnholt

// Every colour, size and duration of the window; nothing else in QML holds one.
QtObject {
    readonly property bool dark: App.dark

    readonly property color background: dark ? "#14171A" : "#F5F6F7"
    readonly property color surface: dark ? "#1C2024" : "#FFFFFF"
    readonly property color sunken: dark ? "#252A2F" : "#ECEEF1"
    readonly property color line: dark ? "#30363C" : "#E1E4E8"
    readonly property color text: dark ? "#E8EBEE" : "#16191D"
    readonly property color second: dark ? "#AEB7C1" : "#505965"
    readonly property color third: dark ? "#949EA9" : "#5E6773"
    // Of what cannot be used now; never of what must be read.
    readonly property color disabled: dark ? "#717B87" : "#8B94A1"
    readonly property color accent: dark ? "#43B9C0" : "#0B6E75"
    readonly property color soft: dark ? "#173A3D" : "#DCEFEF"
    readonly property color good: dark ? "#4CC07F" : "#1A7841"
    readonly property color warning: dark ? "#E0A53F" : "#94590A"
    readonly property color bad: dark ? "#EF7268" : "#C2372E"

    readonly property color goodSoft: dark ? "#182E24" : "#E0F2E7"
    readonly property color warningSoft: dark ? "#352A17" : "#FAEEDC"
    readonly property color badSoft: dark ? "#3A2122" : "#FBE6E4"
    readonly property color accentInk: dark ? "#0B1416" : "#FFFFFF"
    readonly property color badInk: dark ? "#1B0C0B" : "#FFFFFF"
    readonly property color accentHover: dark ? "#5CC6CC" : "#095C62"
    readonly property color accentPressed: dark ? "#36A0A7" : "#074B50"
    readonly property color badHover: dark ? "#F3877E" : "#A92E26"
    readonly property color hover: dark ? "#22272C" : "#F1F3F5"
    readonly property color sidebarHover: dark ? "#2C3238" : "#E3E6EA"
    readonly property color control: dark ? "#5C6670" : "#8B94A1"
    readonly property color dim: dark ? "#99000000" : "#66101418"
    readonly property color shadow: dark ? "#30000000" : "#0C101418"

    // Neighbours in a stacked bar, told apart by hue and by lightness.
    readonly property list<color> series: dark
        ? ["#43B9C0", "#8193B0", "#CFA765", "#A58BC9", "#7FB68A", "#D08A94"]
        : ["#0B6E75", "#7A8CA8", "#C9A05A", "#8A6FB0", "#5E9A6B", "#B9697A"]

    readonly property int space4: 4
    readonly property int space8: 8
    readonly property int space12: 12
    readonly property int space16: 16
    readonly property int space24: 24
    readonly property int space32: 32

    readonly property int radiusField: 7
    readonly property int radiusButton: 8
    readonly property int radiusCard: 12
    readonly property int radiusSmall: 4

    readonly property int ring: 2
    readonly property int hairline: 1
    readonly property int iconSize: 16
    readonly property int dot: 8
    readonly property int barHeight: 6
    readonly property int barHeightThin: 4
    readonly property int barHeightThick: 10
    readonly property int rowHeight: 36
    readonly property int rowHeightTwo: 44
    readonly property int fieldHeight: 30
    readonly property int itemHeight: 28
    readonly property int sidebarWidth: 224
    readonly property int tileHeight: 92
    readonly property int tileHeightTall: 106
    readonly property int footHeight: 58
    readonly property int scrollBarWidth: 8
    readonly property int fieldWidth: 260
    readonly property int fieldWidthMiddle: 200
    readonly property int fieldWidthShort: 104
    readonly property int sizeWidth: 76
    readonly property int textWidth: 460
    readonly property int sheetWidth: 520
    readonly property int paneWidth: 332
    readonly property int inspectorWidth: 292
    readonly property int listWidth: 400
    readonly property int wideWidth: 760
    readonly property int fourTilesWidth: 860
    readonly property int summaryHeight: 100
    readonly property int topCardHeight: 164
    readonly property int noticeHeight: 220
    readonly property real mainShare: 0.593
    readonly property int windowWidth: 1280
    readonly property int windowHeight: 820
    readonly property int windowMinimumWidth: 960
    readonly property int windowMinimumHeight: 640

    readonly property int motion: App.reducedMotion ? 0 : 120
    readonly property int toastTime: 5000
    readonly property int tooltipDelay: 600

    readonly property string family: App.fontFamily
    readonly property font title: Qt.font({family: family, pixelSize: 22, weight: Font.Bold})
    readonly property font figure: Qt.font({family: family, pixelSize: 20, weight: Font.Bold})
    readonly property font name: Qt.font({family: family, pixelSize: 15, weight: Font.Bold})
    readonly property font strong: Qt.font({family: family, pixelSize: 13, weight: Font.DemiBold})
    readonly property font medium: Qt.font({family: family, pixelSize: 13, weight: Font.Medium})
    readonly property font body: Qt.font({family: family, pixelSize: 13})
    readonly property font label: Qt.font({family: family, pixelSize: 11})
    readonly property font labelStrong: Qt.font({family: family, pixelSize: 11, weight: Font.DemiBold})
    readonly property font labelMedium: Qt.font({family: family, pixelSize: 11, weight: Font.Medium})
    readonly property font code: Qt.font({family: App.fixedFontFamily, pixelSize: 12})
    readonly property font segment: Qt.font({family: family, pixelSize: 12, weight: Font.Medium})

    function outcomeColor(outcome: string): color {
        switch (outcome) {
        case "success": return good;
        case "warning": return warning;
        case "failed": return bad;
        default: return second;
        }
    }

    function outcomeSoft(outcome: string): color {
        switch (outcome) {
        case "success": return goodSoft;
        case "warning": return warningSoft;
        case "failed": return badSoft;
        default: return sunken;
        }
    }

    function outcomeIcon(outcome: string): string {
        switch (outcome) {
        case "success": return "checkmark";
        case "warning": return "exclamationmark.triangle";
        case "failed": return "xmark";
        default: return "minus";
        }
    }

    // The bar of a disk: full disks stand out, the others share the accent.
    function toneColor(tone: string): color {
        switch (tone) {
        case "good": return good;
        case "warning": return warning;
        case "bad": return bad;
        default: return accent;
        }
    }

    function seriesColor(index: int): color {
        return series[index % series.length];
    }
}

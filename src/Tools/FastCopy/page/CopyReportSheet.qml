import QtQuick
import Varnholt

// What a copy came to: by place, what went wrong, and every file with its checksum.
ConfirmSheet {
    id: sheet

    required property var copying
    readonly property var report: copying.report
    readonly property int problemCount: report.problemCount ?? 0
    readonly property int manifestCount: (report.manifests ?? []).length
    // Of a list: all of the sheet stays on a small window.
    readonly property int rows: Math.max(2, Math.min(6, 9 - manifestCount))
    property string shown: "files"

    function openFor(id: string) {
        copying.showReport(id);
        shown = problemCount > 0 ? "problems" : "files";
        open();
    }

    width: Math.min(Theme.wideWidth, (parent ? parent.width : Theme.wideWidth) - 2 * Theme.space32)
    title: report.title ?? ""
    text: [report.headline ?? "", report.line ?? ""].filter(text => text !== "").join(" ")
    confirmText: Tr.t("shell.close")
    cancelText: ""
    onCancelled: close()
    onConfirmed: close()

    Column {
        width: parent.width
        spacing: Theme.space12

        Flow {
            width: parent.width
            spacing: Theme.space8

            Repeater {
                model: sheet.report.lanes ?? []

                Badge {
                    required property var modelData

                    outcome: modelData.state === "good" ? "success" : modelData.state === "faulty" ? "warning" : "cancelled"
                    text: [modelData.name, modelData.text].filter(text => text !== "").join("  ")
                }
            }
        }
        Column {
            width: parent.width
            visible: sheet.manifestCount > 0

            Repeater {
                model: sheet.report.manifests ?? []

                FactRow {
                    required property string modelData
                    required property int index

                    width: parent.width
                    labelWidth: Theme.fieldWidthMiddle
                    label: index === 0 ? Tr.t("copy-page.report.written-lists") : ""
                    value: modelData
                    Accessible.name: Tr.t("copy-page.report.written-lists") + ": " + modelData
                }
            }
        }
        SegmentedControl {
            visible: sheet.problemCount > 0
            name: Tr.t("copy-page.report")
            options: [
                {value: "problems", title: Tr.t("copy-page.report.problems") + " " + sheet.problemCount},
                {value: "files", title: Tr.t("copy-page.report.files") + " " + (sheet.report.fileCount ?? 0)}
            ]
            value: sheet.shown
            onChosen: value => sheet.shown = value
        }
        ListTable {
            width: parent.width
            height: Math.min(sheet.rows, Math.max(2, count)) * Theme.rowHeightTwo + 2 * Theme.space4
            visible: sheet.shown === "problems"
            name: Tr.t("copy-page.report.problems")
            model: sheet.report.problems ?? []
            delegate: TableRow {
                id: problem
                required property string modelData

                name: modelData
                implicitHeight: Math.max(Theme.rowHeight, words.implicitHeight + Theme.space16)

                Icon {
                    id: shape
                    y: Theme.space12
                    size: Theme.space12
                    name: "exclamationmark.triangle"
                    color: Theme.warning
                }
                Label {
                    id: words
                    anchors.left: shape.right
                    anchors.leftMargin: Theme.space12
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: problem.modelData
                    wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                    Accessible.ignored: true
                }
            }
        }
        ListTable {
            width: parent.width
            height: Math.min(sheet.rows, Math.max(2, count)) * Theme.rowHeightTwo + 2 * Theme.space4
            visible: sheet.shown === "files" && sheet.report.fileCount > 0
            name: Tr.t("copy-page.report.files")
            model: sheet.visible ? sheet.copying.reportFiles : null
            delegate: CopyFileRow {}
        }
    }
}

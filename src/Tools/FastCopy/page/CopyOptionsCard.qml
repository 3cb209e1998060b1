import QtQuick
import Varnholt

// How it is copied.
Card {
    id: card

    required property var copying
    readonly property var options: copying.options
    readonly property bool isClone: options.mode === "clone"

    implicitHeight: column.implicitHeight + 2 * padding

    Column {
        id: column
        width: parent.width
        spacing: Theme.space16

        Flow {
            width: parent.width
            spacing: Theme.space16

            FormRow {
                width: modes.implicitWidth
                title: Tr.t("copy-page.option.mode")

                SegmentedControl {
                    id: modes
                    height: Theme.fieldHeight
                    name: Tr.t("copy-page.option.mode")
                    options: [
                        {value: "copy", title: Tr.t("copy-page.option.copy")},
                        {value: "clone", title: Tr.t("copy-page.option.clone")}
                    ]
                    value: card.options.mode
                    onChosen: value => card.copying.setOption("mode", value)
                }
            }
            FormRow {
                width: Math.max(conflicts.implicitWidth, titleWidth)
                title: Tr.t("copy-page.option.conflict")
                readonly property real titleWidth: Theme.fieldWidthShort

                ComboField {
                    id: conflicts
                    name: Tr.t("copy-page.option.conflict")
                    options: [
                        {value: "skip", title: Tr.t("copy-page.option.skip")},
                        {value: "overwrite", title: Tr.t("copy-page.option.overwrite")},
                        {value: "rename", title: Tr.t("fast-copy.keep-both")}
                    ]
                    value: card.options.conflict
                    onChosen: value => card.copying.setOption("conflict", value)
                }
            }
            FormRow {
                width: Math.max(lists.implicitWidth, Theme.fieldWidthShort)
                title: Tr.t("copy-page.option.manifest")

                ComboField {
                    id: lists
                    name: Tr.t("copy-page.option.manifest")
                    options: [
                        {value: "", title: Tr.t("copy-page.option.manifest.none")},
                        {value: "sums", title: Tr.t("copy-page.option.manifest.sums")},
                        {value: "mhl", title: Tr.t("copy-page.option.manifest.mhl")}
                    ]
                    value: card.options.manifest
                    onChosen: value => card.copying.setOption("manifest", value)
                }
            }
            FormRow {
                width: Math.max(hashes.implicitWidth, Theme.fieldWidthShort)
                visible: card.options.verify
                title: Tr.t("copy-page.option.algorithm")

                ComboField {
                    id: hashes
                    name: Tr.t("copy-page.option.algorithm")
                    options: [
                        {value: "sha256", title: "SHA-256"},
                        {value: "xxhash64", title: "xxHash64"},
                        {value: "md5", title: "MD5"}
                    ]
                    value: card.options.algorithm
                    onChosen: value => card.copying.setOption("algorithm", value)
                }
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space24

            CheckBox {
                text: Tr.t("copy-page.option.verify")
                enabled: !card.isClone && card.options.manifest === ""
                checked: card.options.verify
                onClicked: card.copying.setOption("verify", checked)
            }
            CheckBox {
                text: Tr.t("copy-page.option.metadata")
                enabled: !card.isClone
                checked: card.options.preserveMetadata
                onClicked: card.copying.setOption("preserveMetadata", checked)
            }
            CheckBox {
                text: Tr.t("copy-page.option.links")
                checked: card.options.links
                onClicked: card.copying.setOption("links", checked)
            }
        }
        Label {
            width: parent.width
            visible: card.isClone
            text: Tr.t("copy-page.option.clone.line")
            color: Theme.second
            wrapMode: Text.Wrap
        }
    }
}

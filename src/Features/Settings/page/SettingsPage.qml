import QtQuick
import Varnholt

Page {
    id: page

    readonly property var settings: App.model("settings")

    title: Tr.t("shell.page.settings")
    line: Tr.t("settings.line")
    looks: Object.assign({move: () => moveSheet.open()}, others.looks())
    scrolls: true

    Column {
        width: Math.min(parent.width, Theme.wideWidth)
        spacing: Theme.space16

        ErrorNote {
            width: parent.width
            visible: page.settings.message !== ""
            title: page.settings.message
        }
        SettingsCard {
            width: parent.width
            title: Tr.t("settings.look")

            SettingsRow {
                title: Tr.t("settings.language")
                line: Tr.t("settings.language.line")

                ComboField {
                    name: Tr.t("settings.language")
                    options: page.settings.languageOptions
                    value: page.settings.language
                    onChosen: value => page.settings.language = value
                }
            }
            SettingsRow {
                title: Tr.t("settings.appearance")
                line: Tr.t("settings.appearance.line")

                SegmentedControl {
                    name: Tr.t("settings.appearance")
                    options: page.settings.appearanceOptions
                    value: page.settings.appearance
                    onChosen: value => page.settings.appearance = value
                }
            }
        }

        SettingsCard {
            width: parent.width
            title: Tr.t("settings.database")

            SettingsRow {
                title: Tr.t("settings.folder")
                line: page.settings.databaseFolder
                elideLine: true

                Button {
                    text: Tr.t("settings.move")
                    onClicked: moveSheet.open()
                }
            }
            ErrorNote {
                width: parent.width
                visible: page.settings.moveFailure !== ""
                title: Tr.t("settings.move.failed")
                text: page.settings.moveFailure
                kept: Tr.t("settings.move.kept")
            }
            SettingsRow {
                title: Tr.t("settings.usage")
                line: page.settings.usageText

                Button {
                    text: Tr.t("settings.prune")
                    onClicked: page.settings.prune()
                }
            }
            SettingsRow {
                title: Tr.t("settings.keep-runs")
                line: Tr.t("settings.keep-runs.line")

                ComboField {
                    name: Tr.t("settings.keep-runs")
                    options: page.settings.keepOptions
                    value: page.settings.keepRuns
                    onChosen: value => page.settings.keepRuns = value
                }
            }
            SettingsRow {
                title: Tr.t("settings.keep-files")
                line: Tr.t("settings.keep-files.line")

                ComboField {
                    name: Tr.t("settings.keep-files")
                    options: page.settings.keepOptions
                    value: page.settings.keepFiles
                    onChosen: value => page.settings.keepFiles = value
                }
            }
        }

        Column {
            id: other
            width: parent.width
            spacing: parent.spacing

            Parts {
                id: others
                place: "settings"
                partWidth: other.width
                given: ({page: page})
            }
        }

        SettingsCard {
            width: parent.width
            title: Tr.t("settings.about")

            SettingsRow {
                title: Tr.t("shell.app")
                line: Tr.t("settings.version", {version: page.settings.version})
            }
        }
    }

    ConfirmSheet {
        id: moveSheet

        title: Tr.t("settings.move.title")
        text: Tr.t("settings.move.text")
        confirmText: Tr.t("settings.move.confirm")
        onAboutToShow: folder.path = page.settings.databaseFolder
        onCancelled: close()
        onConfirmed: {
            page.settings.moveDatabase(folder.path);
            close();
        }

        PathField {
            id: folder
            width: parent.width
            name: Tr.t("settings.folder")
        }
    }
}

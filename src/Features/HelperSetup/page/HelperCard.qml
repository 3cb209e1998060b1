import QtQuick
import Varnholt

// The way to the helper's own page.
SettingsCard {
    id: card

    required property Page page
    readonly property var looks: ({})

    title: Tr.t("helper-setup.title")

    SettingsRow {
        title: Tr.t("helper-setup.settings.title")
        line: Tr.t("helper-setup.line")

        Button {
            text: Tr.t("helper-setup.settings.open")
            Accessible.name: text + " " + Tr.t("helper-setup.title")
            onClicked: card.page.navigate("helper")
        }
    }
}

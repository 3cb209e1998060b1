import QtQuick
import Varnholt

// The server that sends mail, and a message to try it.
SettingsCard {
    id: card

    required property Page page
    readonly property var looks: ({})
    readonly property var mail: App.model("mail")
    // What is filled in begins at one edge.
    readonly property int column: Theme.paneWidth

    title: Tr.t("mail-page.title")
    Component.onCompleted: mail.askForPassword()

    component Setting: Field {
        required property string key
        property string stored

        width: card.column
        text: stored
        onStoredChanged: text = stored
        onEditingFinished: if (text !== stored) {
            card.mail.set(key, text);
            text = Qt.binding(() => stored);
        }
    }

    SettingsRow {
        title: Tr.t("mail-page.host")
        line: Tr.t("mail-page.host.line")

        Setting {
            key: "host"
            name: Tr.t("mail-page.host")
            placeholderText: "smtp.example.com"
            stored: card.mail.host
        }
    }
    SettingsRow {
        title: Tr.t("mail-page.security")
        line: Tr.t("mail-page.security.line")

        Row {
            width: card.column
            spacing: Theme.space8

            SegmentedControl {
                anchors.verticalCenter: parent.verticalCenter
                name: Tr.t("mail-page.security")
                options: [
                    {value: "starttls", title: Tr.t("mail-page.security.starttls")},
                    {value: "tls", title: Tr.t("mail-page.security.tls")}
                ]
                value: card.mail.security
                onChosen: value => card.mail.set("security", value)
            }
            Setting {
                width: Theme.sizeWidth
                key: "port"
                name: Tr.t("mail-page.port")
                stored: card.mail.port
            }
        }
    }
    SettingsRow {
        title: Tr.t("mail-page.user")
        line: Tr.t("mail-page.user.line")

        Setting {
            key: "user"
            name: Tr.t("mail-page.user")
            stored: card.mail.user
        }
    }
    SettingsRow {
        title: Tr.t("mail-page.password")
        line: card.mail.passwordText

        Row {
            spacing: Theme.space8

            Field {
                id: password
                width: card.column - keep.width - Theme.space8
                name: Tr.t("mail-page.password")
                echoMode: TextInput.Password
                inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData
                onAccepted: keep.clicked()
            }
            Button {
                id: keep
                text: password.length === 0 && card.mail.hasPassword ? Tr.t("mail-page.password.remove") : Tr.t("mail-page.password.keep")
                enabled: password.length > 0 || card.mail.hasPassword
                onClicked: {
                    card.mail.setPassword(password.text);
                    password.clear();
                }
            }
        }
    }
    SettingsRow {
        title: Tr.t("mail-page.sender")
        line: Tr.t("mail-page.sender.line")

        Column {
            spacing: Theme.space8

            Setting {
                key: "sender"
                name: Tr.t("mail-page.sender")
                placeholderText: "varnholt@example.com"
                stored: card.mail.sender
            }
            Setting {
                key: "senderName"
                name: Tr.t("mail-page.sender-name")
                placeholderText: Tr.t("mail-page.sender-name")
                stored: card.mail.senderName
            }
        }
    }
    ErrorNote {
        width: parent.width
        visible: card.mail.message !== ""
        title: card.mail.message
    }
    SettingsRow {
        title: Tr.t("mail-page.test")
        line: card.mail.isTesting ? Tr.t("mail-page.test.sending")
            : card.mail.testText !== "" ? card.mail.testText
            : card.mail.isReady ? Tr.t("mail-page.test.line") : Tr.t("mail-page.test.not-ready")
        icon: card.mail.isTesting || card.mail.testText === "" ? "" : card.mail.testOutcome

        Row {
            spacing: Theme.space8

            Field {
                id: recipient
                width: card.column - send.width - Theme.space8
                name: Tr.t("mail-page.test.recipient")
                placeholderText: Tr.t("mail-page.test.recipient")
                onAccepted: if (send.enabled && !card.mail.isTesting) send.clicked()
            }
            Button {
                id: send
                text: card.mail.isTesting ? Tr.t("shell.stop") : Tr.t("mail-page.test.send")
                enabled: card.mail.isTesting || (card.mail.isReady && recipient.length > 0)
                onClicked: card.mail.isTesting ? card.mail.stopTest() : card.mail.sendTest(recipient.text)
            }
        }
    }
}

import QtQuick
import Varnholt

// The chosen pair: what goes where, by which rules, and whether it is watched.
Card {
    id: card

    required property var folderSync
    readonly property var pair: folderSync.selected

    signal change
    signal remove

    implicitHeight: column.implicitHeight + 2 * padding

    component Rule: Row {
        property alias icon: shape.name
        property alias text: word.text

        spacing: Theme.space4 + 2
        rightPadding: Theme.space16

        Icon {
            id: shape
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.space12
            color: Theme.second
        }
        Label {
            id: word
            color: Theme.second
        }
    }

    Column {
        id: column
        width: parent.width
        spacing: Theme.space12

        Label {
            width: parent.width
            visible: text !== ""
            text: card.pair.ownName ?? ""
            font: Theme.name
            elide: Text.ElideMiddle
        }
        Item {
            width: parent.width
            height: source.implicitHeight

            SyncFolder {
                id: source
                anchors.left: parent.left
                anchors.right: arrow.left
                anchors.rightMargin: Theme.space12
                role: Tr.t("sync-page.source")
                path: card.pair.sourcePath ?? ""
            }
            Rectangle {
                x: source.reach + Theme.space12
                anchors.verticalCenter: parent.verticalCenter
                width: Math.max(0, arrow.x - Theme.space4 - x)
                height: Theme.hairline
                color: Theme.line
            }
            Icon {
                id: arrow
                anchors.centerIn: parent
                name: "arrow.right"
                color: Theme.accent
            }
            SyncFolder {
                anchors.left: arrow.right
                anchors.leftMargin: Theme.space12
                anchors.right: parent.right
                role: Tr.t("sync-page.destination")
                path: card.pair.destinationPath ?? ""
                isTarget: true
            }
        }
        Flow {
            width: parent.width
            spacing: Theme.space4

            Rule {
                icon: card.pair.deleteExtraneous ? "trash" : "tray"
                text: card.pair.deleteExtraneous ? Tr.t("sync-page.rule.delete") : Tr.t("sync-page.rule.keep")
            }
            Rule {
                visible: card.pair.compareContents ?? false
                icon: "magnifyingglass"
                text: Tr.t("sync-page.rule.contents")
            }
            Rule {
                icon: "clock"
                text: card.pair.lastText ?? ""
            }
        }
        Item {
            width: parent.width
            // The buttons stand below where they do not fit beside.
            readonly property bool stacked: first.implicitWidth + buttons.width + Theme.space12 > width

            height: stacked ? switches.height + buttons.height : Math.max(switches.height, buttons.height)

            Grid {
                id: switches
                width: parent.stacked ? parent.width : buttons.x - Theme.space12
                rowSpacing: Theme.space4
                // Side by side where there is room.
                columnSpacing: Theme.space24
                columns: first.implicitWidth + login.implicitWidth + columnSpacing <= width ? 2 : 1

                Row {
                    id: first
                    height: Theme.fieldHeight
                    spacing: Theme.space8

                    Switch {
                        anchors.verticalCenter: parent.verticalCenter
                        name: Tr.t("sync-page.watch")
                        checked: card.pair.watch ?? false
                        onClicked: {
                            card.folderSync.setWatch(card.pair.pairId, checked);
                            checked = Qt.binding(() => card.pair.watch ?? false);
                        }
                    }
                    Label {
                        anchors.verticalCenter: parent.verticalCenter
                        text: Tr.t("sync-page.watch")
                        Accessible.ignored: true
                    }
                }
                CheckBox {
                    id: login
                    height: Theme.fieldHeight
                    visible: card.pair.watch ?? false
                    text: Tr.t("sync-page.login")
                    checked: card.folderSync.opensAtLogin
                    onClicked: {
                        card.folderSync.enableOpenAtLogin(checked);
                        checked = Qt.binding(() => card.folderSync.opensAtLogin);
                    }
                }
            }
            Row {
                id: buttons
                anchors.right: parent.right
                y: parent.stacked ? switches.height : 0
                spacing: Theme.space4

                Button {
                    kind: "quiet"
                    text: Tr.t("sync-page.change")
                    onClicked: card.change()
                }
                Button {
                    kind: "quiet"
                    text: Tr.t("sync-page.remove")
                    enabled: !(card.pair.isRunning ?? false)
                    onClicked: card.remove()
                }
            }
        }
    }
}

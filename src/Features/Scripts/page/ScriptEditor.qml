import QtQuick
import Varnholt

// Name and text of a script, and what it printed when it was tried.
FocusScope {
    id: editor

    required property var scripts
    readonly property bool isSaved: scripts.current !== ""
    // The name gets a line of its own where the buttons leave it too little.
    readonly property bool narrow: width < buttons.width + Theme.fieldWidth
    readonly property bool wasRun: scripts.isRunning || scripts.outcome !== ""

    signal remove

    function focusName() { nameField.forceActiveFocus(Qt.TabFocusReason); }
    function focusBody() { bodyBox.focusText(); }

    Field {
        id: nameField
        anchors.left: parent.left
        anchors.right: editor.narrow ? parent.right : buttons.left
        anchors.rightMargin: editor.narrow ? 0 : Theme.space16
        placeholderText: Tr.t("scripts.name")
        text: editor.scripts.name
        onTextEdited: editor.scripts.name = text
    }
    Row {
        id: buttons
        anchors.right: parent.right
        y: editor.narrow ? nameField.height + Theme.space8 : 0
        spacing: Theme.space8

        Button {
            visible: editor.isSaved && !editor.scripts.isChanged
            kind: "quiet"
            text: Tr.t("scripts.remove")
            enabled: !editor.scripts.isRunning
            onClicked: editor.remove()
        }
        Button {
            visible: editor.isSaved && editor.scripts.isChanged
            kind: "quiet"
            text: Tr.t("scripts.revert")
            onClicked: editor.scripts.revert()
        }
        Button {
            text: Tr.t("scripts.save")
            shortcut: "Ctrl+S"
            enabled: editor.scripts.isChanged
            onClicked: editor.scripts.save()
        }
        Button {
            kind: editor.scripts.isRunning ? "plain" : "main"
            iconName: editor.scripts.isRunning ? "stop" : "play"
            shortcut: "Ctrl+R"
            text: editor.scripts.isRunning ? Tr.t("shell.stop") : editor.scripts.isChanged ? Tr.t("scripts.save-run") : Tr.t("scripts.run")
            enabled: editor.scripts.isRunning || editor.isSaved || editor.scripts.isChanged
            onClicked: editor.scripts.isRunning ? editor.scripts.stop() : editor.scripts.run()
        }
    }
    ErrorNote {
        id: fault
        anchors.top: buttons.bottom
        anchors.topMargin: visible ? Theme.space12 : 0
        width: parent.width
        height: visible ? implicitHeight : 0
        visible: editor.scripts.message !== ""
        title: editor.scripts.message
    }
    TextBox {
        id: bodyBox
        anchors.top: fault.bottom
        anchors.topMargin: Theme.space12
        anchors.bottom: result.top
        anchors.bottomMargin: Theme.space12
        width: parent.width
        name: Tr.t("scripts.body")
        placeholderText: "#!/bin/sh"
        code: true
        text: editor.scripts.body
        onEdited: editor.scripts.body = text
    }
    Item {
        id: result
        anchors.bottom: parent.bottom
        width: parent.width
        height: editor.wasRun ? Math.min(parent.height / 3, Theme.noticeHeight) : hint.implicitHeight

        Label {
            id: hint
            visible: !editor.wasRun
            width: parent.width
            text: Tr.t("scripts.hint")
            color: Theme.second
            wrapMode: Text.Wrap
        }
        Item {
            id: ending
            visible: editor.wasRun
            width: parent.width
            height: Theme.space24

            Badge {
                anchors.verticalCenter: parent.verticalCenter
                running: editor.scripts.isRunning
                outcome: editor.scripts.outcome
                text: running ? Tr.t("scripts.running") : editor.scripts.outcomeText
            }
        }
        TextBox {
            visible: editor.wasRun
            anchors.top: ending.bottom
            anchors.topMargin: Theme.space4
            anchors.bottom: parent.bottom
            width: parent.width
            name: Tr.t("scripts.output")
            code: true
            readOnly: true
            follows: true
            text: editor.scripts.output
            placeholderText: editor.scripts.isRunning ? "" : Tr.t("scripts.no-output")
        }
    }
}

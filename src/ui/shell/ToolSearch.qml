import QtQuick
import QtQuick.Templates as T
import Varnholt

// Finds a tool by name, by what it does, or by an old name, and a page by its name; the list under it is worked from the field.
SearchField {
    id: field

    signal picked(string id)

    // [{id, title, summary, icon}]
    property var pages: []
    property var absentPages: []
    readonly property var results: {
        if (text.trim() === "")
            return [];
        const tools = App.shell.search(text);
        const found = pages.filter(page => App.shell.matches(page.title, text)).map(page => ({
            id: page.id, name: page.title, summary: page.summary, icon: page.icon, sectionTitle: "",
            available: !absentPages.some(absent => absent.id === page.id)
        }));
        // Nothing that is not there yet stands before something that works.
        const all = tools.concat(found);
        return all.filter(hit => hit.available).concat(all.filter(hit => !hit.available));
    }

    function pick(index: int) {
        if (index < 0 || index >= results.length)
            return;
        const id = results[index].id;
        clear();
        picked(id);
    }

    implicitHeight: Theme.itemHeight
    placeholderText: Tr.t("shell.search")
    Accessible.role: Accessible.EditableText
    Keys.onUpPressed: list.decrementCurrentIndex()
    Keys.onDownPressed: list.incrementCurrentIndex()
    Keys.onReturnPressed: pick(list.currentIndex)
    Keys.onEnterPressed: pick(list.currentIndex)
    onResultsChanged: list.currentIndex = results.length > 0 ? 0 : -1

    Label {
        anchors.right: parent.right
        anchors.rightMargin: Theme.space8 + 2
        anchors.verticalCenter: parent.verticalCenter
        visible: field.length === 0 && !field.activeFocus
        text: App.keyText("Ctrl+F")
        font: Theme.label
        color: Theme.second
        Accessible.ignored: true
    }

    T.Popup {
        y: field.height + Theme.space4
        width: Theme.listWidth
        height: field.results.length > 0 ? Math.min(list.contentHeight, 9 * Theme.rowHeightTwo) + 2 * padding : none.implicitHeight + 2 * padding
        padding: Theme.space4
        visible: field.text.trim() !== "" && field.activeFocus
        focus: false
        closePolicy: T.Popup.NoAutoClose
        background: FloatingSurface {}

        contentItem: Item {
            ListView {
                id: list
                anchors.fill: parent
                clip: true
                model: field.results
                boundsBehavior: Flickable.StopAtBounds
                highlightMoveDuration: 0
                Accessible.role: Accessible.List
                Accessible.name: Tr.t("shell.search.results")

                T.ScrollBar.vertical: ScrollBar {}

                delegate: Rectangle {
                    id: hit
                    required property var modelData
                    required property int index

                    width: list.width
                    height: Theme.rowHeightTwo
                    radius: Theme.radiusField + 1
                    color: ListView.isCurrentItem ? Theme.soft : "transparent"
                    Accessible.role: Accessible.ListItem
                    Accessible.name: modelData.name
                    Accessible.description: modelData.available ? modelData.summary : Tr.t("shell.absent.title")
                    Accessible.onPressAction: field.pick(index)

                    Icon {
                        id: shape
                        x: Theme.space8
                        anchors.verticalCenter: parent.verticalCenter
                        name: hit.modelData.icon
                        color: hit.ListView.isCurrentItem ? Theme.accent : Theme.second
                    }
                    Column {
                        anchors.left: shape.right
                        anchors.leftMargin: Theme.space12
                        anchors.right: parent.right
                        anchors.rightMargin: Theme.space12
                        anchors.verticalCenter: parent.verticalCenter
                        spacing: 1

                        Item {
                            width: parent.width
                            height: name.implicitHeight

                            Label {
                                id: name
                                width: parent.width - place.width - Theme.space8
                                text: hit.modelData.name
                                font: Theme.medium
                                color: hit.modelData.available ? Theme.text : Theme.second
                            }
                            Label {
                                id: place
                                anchors.right: parent.right
                                anchors.baseline: name.baseline
                                text: hit.modelData.available ? hit.modelData.sectionTitle : Tr.t("shell.absent.title")
                                font: Theme.label
                                color: Theme.second
                            }
                        }
                        Label {
                            width: parent.width
                            text: hit.modelData.summary
                            font: Theme.label
                            color: Theme.second
                        }
                    }
                    MouseArea {
                        anchors.fill: parent
                        hoverEnabled: true
                        onPositionChanged: list.currentIndex = hit.index
                        onClicked: field.pick(hit.index)
                    }
                }
            }
            Label {
                id: none
                visible: field.results.length === 0
                width: parent.width
                padding: Theme.space12
                text: Tr.t("shell.search.none", {text: field.text.trim()})
                color: Theme.second
                wrapMode: Text.Wrap
            }
        }
    }
}

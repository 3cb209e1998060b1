import QtQuick
import QtQuick.Templates as T
import Varnholt

// One choice of many: [{value, title}].
T.ComboBox {
    id: control

    property var options: []
    property string value
    property string name

    signal chosen(string value)

    function follow() {
        currentIndex = Qt.binding(() => options.findIndex(option => option.value === value));
    }

    // As wide as the longest choice, so that choosing moves nothing.
    readonly property real widest: {
        let most = 0;
        for (const option of options)
            most = Math.max(most, metrics.advanceWidth(option.title));
        return Math.ceil(most);
    }

    implicitWidth: widest + leftPadding + rightPadding
    implicitHeight: Theme.fieldHeight
    leftPadding: Theme.space12
    rightPadding: Theme.space32
    font: Theme.body
    model: options
    textRole: "title"
    valueRole: "value"
    displayText: options.find(option => option.value === value)?.title ?? ""
    onActivated: index => {
        const picked = options[index].value;
        follow();
        chosen(picked);
    }
    // The template goes to the first choice whenever its model is told anew.
    onModelChanged: follow()
    Component.onCompleted: follow()
    Accessible.name: name === "" ? displayText : name + ": " + displayText
    Keys.onReturnPressed: popup.open()
    Keys.onEnterPressed: popup.open()

    FontMetrics {
        id: metrics
        font: control.font
    }

    contentItem: Label {
        text: control.displayText
        font: control.font
        color: control.enabled ? Theme.text : Theme.disabled
        Accessible.ignored: true
    }

    indicator: Icon {
        x: control.width - width - Theme.space8 - 2
        y: (control.height - height) / 2
        size: Theme.space12
        name: "chevron.down"
        color: Theme.second
    }

    background: Rectangle {
        radius: Theme.radiusField
        color: control.down || control.hovered ? Theme.hover : Theme.dark ? Theme.background : Theme.surface
        border.width: Theme.hairline
        border.color: Theme.line

        FocusRing { shown: control.visualFocus }
    }

    delegate: T.ItemDelegate {
        id: choice
        required property var modelData
        required property int index

        width: ListView.view.width
        implicitHeight: Theme.itemHeight
        highlighted: control.highlightedIndex === index
        Accessible.name: modelData.title

        contentItem: Label {
            leftPadding: Theme.space8
            text: choice.modelData.title
            font: choice.index === control.currentIndex ? Theme.medium : Theme.body
            color: choice.highlighted ? Theme.accent : Theme.text
            Accessible.ignored: true
        }
        background: Rectangle {
            radius: Theme.radiusField
            color: choice.highlighted ? Theme.soft : "transparent"
        }
    }

    popup: T.Popup {
        y: control.height + Theme.space4
        width: Math.max(control.width, control.widest + Theme.space32 + Theme.space8)
        height: Math.min(contentItem.implicitHeight + 2 * padding, control.Window.height / 2)
        padding: Theme.space4
        margins: Theme.space8

        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: control.delegateModel
            currentIndex: control.highlightedIndex
            T.ScrollBar.vertical: ScrollBar {}
        }
        background: FloatingSurface {}
    }
}

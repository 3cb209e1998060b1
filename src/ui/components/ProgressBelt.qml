import QtQuick
import Varnholt

// Steps beside each other, each with its own progress and, once it is over, its outcome:
// [{title, value, outcome, stateText}].
Row {
    id: belt

    property var steps: []

    spacing: Theme.space4 + 2

    Repeater {
        model: belt.steps

        Column {
            id: step
            required property var modelData
            readonly property string outcome: modelData.outcome ?? ""
            readonly property bool faulty: outcome === "warning" || outcome === "failed"

            width: (belt.width - belt.spacing * (belt.steps.length - 1)) / belt.steps.length
            spacing: Theme.space8

            Bar {
                width: parent.width
                value: step.modelData.value
                tone: step.faulty ? Theme.outcomeColor(step.outcome) : Theme.accent
                name: [step.modelData.title, step.modelData.stateText ?? ""].filter(text => text !== "").join(", ")
            }
            Row {
                width: parent.width
                spacing: Theme.space4

                Icon {
                    id: shape
                    anchors.verticalCenter: parent.verticalCenter
                    visible: step.outcome !== ""
                    size: Theme.space12
                    name: visible ? Theme.outcomeIcon(step.outcome) : ""
                    color: Theme.outcomeColor(step.outcome)
                }
                Label {
                    width: parent.width - (shape.visible ? shape.width + parent.spacing : 0)
                    text: step.modelData.title
                    font: Theme.label
                    color: Theme.third
                    Accessible.ignored: true
                }
            }
        }
    }
}

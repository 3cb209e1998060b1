import QtQuick
import Varnholt

// Steps beside each other, each with its own progress: [{title, value}].
Row {
    id: belt

    property var steps: []

    spacing: Theme.space4 + 2

    Repeater {
        model: belt.steps

        Column {
            id: step
            required property var modelData

            width: (belt.width - belt.spacing * (belt.steps.length - 1)) / belt.steps.length
            spacing: Theme.space8

            Bar {
                width: parent.width
                value: step.modelData.value
                name: step.modelData.title
            }
            Label {
                width: parent.width
                text: step.modelData.title
                font: Theme.label
                color: Theme.third
            }
        }
    }
}

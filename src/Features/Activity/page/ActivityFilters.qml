import QtQuick
import Varnholt

// The filters of the run table; wraps where the window is narrow.
Flow {
    id: filters

    required property var activity

    spacing: Theme.space8

    SearchField {
        width: Theme.fieldWidthMiddle
        placeholderText: Tr.t("activity.search")
        text: filters.activity.text
        onTextChanged: filters.activity.text = text
    }
    ComboField {
        name: Tr.t("activity.filter.period")
        options: filters.activity.periodOptions
        value: filters.activity.period
        onChosen: value => filters.activity.period = value
    }
    Field {
        visible: filters.activity.period === "range"
        width: Theme.fieldWidthShort
        name: Tr.t("activity.filter.from")
        placeholderText: Tr.t("activity.filter.date")
        text: filters.activity.from
        onEditingFinished: filters.activity.from = text
    }
    Field {
        visible: filters.activity.period === "range"
        width: Theme.fieldWidthShort
        name: Tr.t("activity.filter.to")
        placeholderText: Tr.t("activity.filter.date")
        text: filters.activity.to
        onEditingFinished: filters.activity.to = text
    }
    ComboField {
        width: Math.min(implicitWidth, Theme.fieldWidthMiddle)
        name: Tr.t("activity.filter.tool")
        options: filters.activity.toolOptions
        value: filters.activity.toolID
        onChosen: value => filters.activity.toolID = value
    }
    ComboField {
        name: Tr.t("activity.filter.outcome")
        options: filters.activity.outcomeOptions
        value: filters.activity.outcome
        onChosen: value => filters.activity.outcome = value
    }
    ComboField {
        width: Math.min(implicitWidth, Theme.fieldWidthMiddle)
        name: Tr.t("activity.filter.trigger")
        options: filters.activity.triggerOptions
        value: filters.activity.trigger
        onChosen: value => filters.activity.trigger = value
    }
    ComboField {
        visible: options.length > 2
        width: Math.min(implicitWidth, Theme.fieldWidthMiddle)
        name: Tr.t("activity.filter.computer")
        options: filters.activity.computerOptions
        value: filters.activity.computer
        onChosen: value => filters.activity.computer = value
    }
}

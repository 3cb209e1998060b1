import QtQuick
import Varnholt

// A tool or page whose engine is not in this version: says so, and what it will do.
Page {
    id: page

    required property string pageId

    readonly property var fixed: map.absent.find(entry => entry.id === pageId)
    readonly property var entry: fixed ? {name: fixed.title, icon: fixed.icon, summary: fixed.summary}
                                       : App.shell.tool(pageId)

    title: entry.name
    line: entry.summary

    PageMap { id: map }

    Card {
        width: parent.width
        height: Math.min(parent.height, Theme.noticeHeight)

        EmptyState {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.space24
            iconName: page.entry.icon
            text: Tr.t("shell.absent.title")
            detail: Tr.t("shell.absent.detail", {name: page.entry.name})
        }
    }
}

import QtQuick
import Varnholt

// What goes where: chosen at the top as a picture, copied below with a lane for each place.
Page {
    id: page

    readonly property var copying: App.model("fastCopy")
    readonly property bool isChosen: copying.sources.length + copying.destinations.length > 0
    function refresh() { copying.refresh(); }

    title: App.shell.tool("fast-copy").name
    line: Tr.t("copy-page.line")
    looks: ({
        disks: () => disks.openAt(choice)
    })
    scrolls: true
    settled: !copying.isLooking
    footShown: isChosen
    footRoom: bottom.implicitHeight
    Component.onCompleted: if (isChosen) copying.refresh()

    Column {
        width: parent.width
        spacing: Theme.space24

        CopyChoice {
            id: choice
            width: parent.width
            copying: page.copying
            onFilesWanted: choosers.pickFiles()
            onFolderWanted: choosers.pickFolder(false)
            onDiskWanted: button => disks.openAt(button)
            onPlaceWanted: choosers.pickFolder(true)
        }
        CopyOptionsCard {
            width: parent.width
            visible: !page.copying.hasDisk
            copying: page.copying
        }
        CopyExample {
            width: parent.width
            visible: !page.isChosen && page.copying.jobCount === 0
        }
        CopyQueueList {
            id: queue
            width: parent.width
            visible: page.copying.jobCount > 0
            copying: page.copying
            onReportWanted: id => report.openFor(id)
        }
    }

    foot: CopyFoot {
        id: bottom
        anchors.fill: parent
        copying: page.copying
        onHelperWanted: page.navigate("helper")
        // The button goes with what was chosen; the keyboard goes on at the copy.
        onBegun: reason => { if (!page.isChosen) queue.newest()?.takeFocus(reason); }
    }

    CopyChoosers {
        id: choosers
        copying: page.copying
    }
    CopyDiskMenu {
        id: disks
        copying: page.copying
    }
    CopyReportSheet {
        id: report
        copying: page.copying
    }
    ConfirmSheet {
        id: unmount
        title: Tr.t("copy-page.unmount.title")
        text: page.copying.unmountQuestion
        confirmText: Tr.t("copy-page.unmount")
        onCancelled: page.copying.answerUnmount(false)
        onConfirmed: page.copying.answerUnmount(true)
    }
    Connections {
        target: page.copying
        function onUnmountQuestionChanged() { page.copying.unmountQuestion === "" ? unmount.close() : unmount.open(); }
        function onSaid(text: string) { page.said(text); }
    }
}

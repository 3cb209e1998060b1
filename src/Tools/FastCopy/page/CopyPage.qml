import QtQuick
import Varnholt

// What goes where: chosen at the top as a picture, copied below with a lane for each place.
Page {
    id: page

    readonly property var copying: App.model("fastCopy")
    readonly property bool isChosen: copying.sources.length + copying.destinations.length > 0
    // A picture of a copy at work is taken of this state.
    property string wanted

    // Documents to the folders beside it, as far as there are any.
    function fill() {
        copying.addSources([App.documentsFolder]);
        copying.addDestinations(["~/Archive", "~/Backup", "~/Shuttle"]);
    }

    function showState(name: string): bool {
        switch (name) {
        case "filled":
            fill();
            return true;
        case "running":
        case "paused":
        case "report":
            fill();
            wanted = name;
            return true;
        case "disks":
            disks.openAt(choice);
            return true;
        }
        return false;
    }

    function reachState() {
        if (wanted === "" || copying.isLooking)
            return;
        if (isChosen) {
            if (copying.canRun)
                copying.run();
            else
                wanted = "";
            return;
        }
        const job = queue.newest();
        if (job === null)
            return;
        if (wanted === "report" ? !job.isOver : wanted === "running" && job.rateText === "" && !job.isOver)
            return;
        const reached = wanted;
        wanted = "";
        if (reached === "report")
            report.openFor(job.jobId);
        else if (reached === "paused")
            copying.togglePause(job.jobId, 0);
    }

    function refresh() { copying.refresh(); }

    title: App.shell.tool("fast-copy").name
    line: Tr.t("copy-page.line")
    scrolls: true
    settled: !copying.isLooking && wanted === ""
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
        function onChosenChanged() { page.reachState(); }
        function onJobsChanged() { page.reachState(); }
    }
}

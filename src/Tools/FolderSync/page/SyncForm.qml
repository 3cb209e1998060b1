import QtQuick
import Varnholt

// Which folder goes where, and by which rules.
ConfirmSheet {
    id: form

    required property var folderSync
    property string pairId
    property var dropped: []
    property string fault

    signal saved

    function edit(id: string, folders: var) {
        pairId = id;
        dropped = folders;
        open();
    }

    firstField: source
    title: pairId === "" ? Tr.t("sync-page.form.new") : Tr.t("sync-page.form.edit")
    text: Tr.t("sync-page.form.text")
    confirmText: Tr.t("sync-page.form.save")
    canConfirm: source.path.trim() !== "" && destination.path.trim() !== ""
    onAboutToShow: {
        const draft = folderSync.draft(pairId);
        fault = "";
        source.path = dropped[0] ?? draft.source;
        destination.path = dropped[1] ?? draft.destination;
        ownName.text = draft.name;
        removes.checked = draft.deleteExtraneous;
        compares.checked = draft.compareContents;
        watches.checked = draft.watch;
    }
    onCancelled: close()
    onConfirmed: {
        fault = folderSync.save(pairId, {
            name: ownName.text, source: source.path, destination: destination.path,
            deleteExtraneous: removes.checked, compareContents: compares.checked, watch: watches.checked
        });
        if (fault !== "")
            return;
        close();
        saved();
    }

    Column {
        width: parent.width
        spacing: Theme.space12

        FormRow {
            title: Tr.t("sync-page.form.source")

            PathField {
                id: source
                width: parent.width
                name: Tr.t("sync-page.form.source")
                placeholderText: Tr.t("sync-page.form.drop")
            }
        }
        FormRow {
            title: Tr.t("sync-page.form.destination")

            PathField {
                id: destination
                width: parent.width
                name: Tr.t("sync-page.form.destination")
                placeholderText: Tr.t("sync-page.form.drop")
            }
        }
        FormRow {
            title: Tr.t("sync-page.form.name")

            Field {
                id: ownName
                width: parent.width
                name: Tr.t("sync-page.form.name")
                placeholderText: Tr.t("sync-page.form.name.auto")
            }
        }
        SettingsRow {
            title: Tr.t("sync-page.form.delete")
            line: Tr.t("sync-page.form.delete.line")

            Switch {
                id: removes
                name: Tr.t("sync-page.form.delete")
            }
        }
        SettingsRow {
            title: Tr.t("sync-page.form.contents")
            line: Tr.t("sync-page.form.contents.line")

            Switch {
                id: compares
                name: Tr.t("sync-page.form.contents")
            }
        }
        SettingsRow {
            title: Tr.t("sync-page.watch")
            line: Tr.t("sync-page.form.watch.line")

            Switch {
                id: watches
                name: Tr.t("sync-page.watch")
            }
        }
        ErrorNote {
            width: parent.width
            visible: form.fault !== ""
            title: form.fault
        }
    }
}

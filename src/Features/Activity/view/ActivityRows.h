#pragma once

#include "Core/LocalCalendar.h"
#include "Core/RunFiles.h"
#include "Core/RunRecord.h"
#include "Core/Texts.h"
#include "app/ColumnOrder.h"
#include "app/RecordListModel.h"

#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <span>
#include <string>
#include <vector>

namespace vh {
class CancelToken;
}

namespace vh::app {

struct ActivityFilter;

/// One run as the list shows it.
struct RunRow {
    Uuid id;
    QString runId;
    QString toolID;
    QString toolName;
    QString icon;
    QString computer;
    QString triggerTitle;
    QString outcome;
    QString outcomeTitle;
    QString summary;
    QString dayText;
    QString timeText;
    QString durationText;
    QString filesText;
    QString bytesText;

    const Uuid& key() const { return id; }
    static std::span<const RecordListModel<RunRow>::Role> roles();
};

/// One file of a run as the list shows it.
struct FileRow {
    int number = 0;
    QString path;
    QString displayPath;
    QString place;
    QString sizeText;
    QString state;
    QString stateTitle;

    int key() const { return number; }
    static std::span<const RecordListModel<FileRow>::Role> roles();
};

/// What a filter lets through of the log, in order, and what there is to filter by.
struct ActivityRows {
    std::vector<RunRecord> records;
    std::vector<RunRow> rows; ///< in the order of records
    QString totalsText;
    QVariantList tools;
    QVariantList triggers;
    QVariantList computers;
};

/// What the texts of activity are made with; a copy goes to the worker.
struct ActivityWords {
    Texts texts;
    LocalCalendar calendar;
    Date now;
    std::string home;

    /// `all` is the log, oldest first. Throws Cancelled.
    ActivityRows rows(std::vector<RunRecord> all, const ActivityFilter& filter, const ColumnOrder& order,
                      const CancelToken& cancel) const;
    QVariantList outcomes() const;
    QVariantMap facts(const RunRecord& record) const;
    std::vector<FileRow> files(std::span<const RunFileRow> rows) const;

private:
    QString text(std::string_view key) const;
    void sort(std::vector<RunRecord>& newestFirst, const ColumnOrder& order) const;
    RunRow row(const RunRecord& record) const;
    QString totals(const std::vector<RunRecord>& records) const;
    void addOptions(ActivityRows& shown, const std::vector<RunRecord>& all) const;
};

} // namespace vh::app

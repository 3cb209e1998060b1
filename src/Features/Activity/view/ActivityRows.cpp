#include "Features/Activity/view/ActivityRows.h"

#include "Core/ByteFormat.h"
#include "Core/Fold.h"
#include "Core/Printable.h"
#include "Core/RunFilter.h"
#include "Core/RunLog.h"
#include "Core/RunWords.h"
#include "Core/ToolTexts.h"
#include "Features/Activity/view/ActivityFilter.h"
#include "Platform/CancelToken.h"
#include "app/AppTexts.h"
#include "app/DayTexts.h"
#include "app/Options.h"
#include "app/PathText.h"
#include "app/ToolLook.h"

#include <QCollator>
#include <algorithm>
#include <set>

namespace vh::app {

namespace {

QString shown(std::string_view bytes) {
    return qtText(printable(bytes));
}

const std::string& computerOf(const RunRecord& record) {
    return record.computer ? *record.computer : RunLog::thisComputer();
}

template <class E>
std::string keyOf(std::string_view family, E value) {
    return std::string(family).append(rawValue(value));
}

/// "Any", then the values by their titles.
QVariantList sorted(const QString& any, QVariantList list, const QLocale& locale) {
    QCollator collator(locale);
    std::ranges::stable_sort(list, [&](const QVariant& a, const QVariant& b) {
        return collator.compare(a.toMap()[QStringLiteral("title")].toString(),
                                b.toMap()[QStringLiteral("title")].toString()) < 0;
    });
    list.prepend(option({}, any));
    return list;
}

} // namespace

std::span<const RecordListModel<RunRow>::Role> RunRow::roles() {
    using Model = RecordListModel<RunRow>;
    static constexpr Model::Role table[] = {
        Model::role<&RunRow::runId>("runId"),         Model::role<&RunRow::toolID>("toolID"),
        Model::role<&RunRow::toolName>("toolName"),   Model::role<&RunRow::icon>("icon"),
        Model::role<&RunRow::computer>("computer"),   Model::role<&RunRow::triggerTitle>("triggerTitle"),
        Model::role<&RunRow::outcome>("outcome"),     Model::role<&RunRow::outcomeTitle>("outcomeTitle"),
        Model::role<&RunRow::summary>("summary"),     Model::role<&RunRow::dayText>("dayText"),
        Model::role<&RunRow::timeText>("timeText"),   Model::role<&RunRow::durationText>("durationText"),
        Model::role<&RunRow::filesText>("filesText"), Model::role<&RunRow::bytesText>("bytesText"),
    };
    return table;
}

std::span<const RecordListModel<FileRow>::Role> FileRow::roles() {
    using Model = RecordListModel<FileRow>;
    static constexpr Model::Role table[] = {
        Model::role<&FileRow::path>("path"),   Model::role<&FileRow::displayPath>("displayPath"),
        Model::role<&FileRow::place>("place"), Model::role<&FileRow::sizeText>("sizeText"),
        Model::role<&FileRow::state>("state"), Model::role<&FileRow::stateTitle>("stateTitle"),
    };
    return table;
}

void ActivityWords::sort(std::vector<RunRecord>& newestFirst, const ColumnOrder& order) const {
    const auto by = [&](auto&& keyOf) {
        const auto less = [&](const RunRecord& a, const RunRecord& b) {
            return order.descending ? keyOf(b) < keyOf(a) : keyOf(a) < keyOf(b);
        };
        std::ranges::stable_sort(newestFirst, less);
    };
    if (order.key == u"run")
        by([&](const RunRecord& record) { return foldForSearch(toolName(texts, record.toolID)); });
    else if (order.key == u"trigger")
        by([&](const RunRecord& record) { return text(keyOf("trigger.", record.trigger)); });
    else if (order.key == u"files")
        by([](const RunRecord& record) { return record.files().value_or(-1); });
    else if (order.key == u"size")
        by([](const RunRecord& record) { return record.bytes().value_or(-1); });
    else if (order.key == u"duration")
        by([](const RunRecord& record) { return record.duration; });
    else if (!order.descending)
        std::ranges::reverse(newestFirst);
}

ActivityRows ActivityWords::rows(std::vector<RunRecord> all, const ActivityFilter& filter,
                                 const ColumnOrder& order, const CancelToken& cancel) const {
    ActivityRows result;
    addOptions(result, all);
    std::ranges::reverse(all);
    const RunFilter::Surroundings dependencies{[this](const std::string& id) { return toolName(texts, id); },
                                               RunLog::thisComputer(), now, calendar, texts};
    result.records = filter.runFilter(now, calendar).apply(std::move(all), dependencies);
    sort(result.records, order);
    result.rows.reserve(result.records.size());
    for (const RunRecord& record : result.records) {
        cancel.throwIfCancelled();
        result.rows.push_back(row(record));
    }
    result.totalsText = totals(result.records);
    return result;
}

QVariantList ActivityWords::outcomes() const {
    QVariantList list{option({}, text("activity.any-outcome"))};
    for (const Outcome outcome : allCases<Outcome>())
        list << option(qtText(rawValue(outcome)), text(keyOf("outcome.", outcome)));
    return list;
}

QVariantMap ActivityWords::facts(const RunRecord& record) const {
    const DayTexts days(texts, calendar, now);
    QVariantList facts;
    const auto add = [&](std::string_view label, const QString& value) {
        if (!value.isEmpty())
            facts << QVariantMap{{QStringLiteral("label"), text(label)}, {QStringLiteral("value"), value}};
    };
    add("activity.heading.trigger", text(keyOf("trigger.", record.trigger)));
    add("activity.filter.computer", shown(computerOf(record)));
    add("activity.heading.duration", qtText(durationText(record.duration, texts.language())));
    if (const auto files = record.files())
        add("activity.heading.files", localeOf(texts.language()).toString(static_cast<qlonglong>(*files)));
    if (const auto bytes = record.bytes())
        add("activity.heading.size", qtText(sizeText(*bytes, texts.language())));
    for (const RunDetail detail : allCases<RunDetail>())
        if (detail != RunDetail::files && detail != RunDetail::bytes)
            add(keyOf("activity.column.", detail), shown(detailOf(record, detail, texts).value_or("")));
    return {
        {QStringLiteral("runId"), qtText(record.id.text())},
        {QStringLiteral("toolID"), shown(record.toolID)},
        {QStringLiteral("toolName"), shown(toolName(texts, record.toolID))},
        {QStringLiteral("icon"), toolIcon(record.toolID)},
        {QStringLiteral("summary"), shown(summaryOf(record, texts))},
        {QStringLiteral("outcome"), qtText(rawValue(record.outcome))},
        {QStringLiteral("outcomeTitle"), text(keyOf("outcome.", record.outcome))},
        {QStringLiteral("whenText"), days.full(record.startedAt)},
        {QStringLiteral("facts"), facts},
    };
}

std::vector<FileRow> ActivityWords::files(std::span<const RunFileRow> rows) const {
    std::vector<FileRow> files;
    for (const RunFileRow& row : rows) {
        const std::string key = "run-file.state." + row.state;
        files.push_back({
            .number = static_cast<int>(files.size()),
            .path = shown(row.path),
            .displayPath = displayPath(row.path, home),
            .place = row.place ? displayPath(*row.place, home) : QString(),
            .sizeText = row.bytes ? qtText(sizeText(*row.bytes, texts.language())) : QString(),
            .state = shown(row.state),
            .stateTitle = texts.has(key) ? text(key) : shown(row.state),
        });
    }
    return files;
}

QString ActivityWords::text(std::string_view key) const {
    return qtText(texts.text(key));
}

RunRow ActivityWords::row(const RunRecord& record) const {
    const DayTexts days(texts, calendar, now);
    const auto files = record.files();
    const auto bytes = record.bytes();
    return {
        .id = record.id,
        .runId = qtText(record.id.text()),
        .toolID = shown(record.toolID),
        .toolName = shown(toolName(texts, record.toolID)),
        .icon = toolIcon(record.toolID),
        .computer = shown(computerOf(record)),
        .triggerTitle = text(keyOf("trigger.", record.trigger)),
        .outcome = qtText(rawValue(record.outcome)),
        .outcomeTitle = text(keyOf("outcome.", record.outcome)),
        .summary = shown(summaryOf(record, texts)),
        .dayText = days.day(record.startedAt),
        .timeText = days.clock(record.startedAt),
        .durationText = qtText(durationText(record.duration, texts.language())),
        .filesText = files ? localeOf(texts.language()).toString(static_cast<qlonglong>(*files)) : QString(),
        .bytesText = bytes ? qtText(sizeText(*bytes, texts.language())) : QString(),
    };
}

QString ActivityWords::totals(const std::vector<RunRecord>& records) const {
    int64_t files = 0;
    double freed = 0;
    for (const RunRecord& record : records) {
        files += record.files().value_or(0);
        freed += record.metric(RunMetric::freedBytes).value_or(0);
    }
    return qtText(
        texts.text("activity.totals", {{"runs", records.size()},
                                       {"files", files},
                                       {"freed", sizeText(static_cast<int64_t>(freed), texts.language())}}));
}

void ActivityWords::addOptions(ActivityRows& into, const std::vector<RunRecord>& all) const {
    std::set<std::string> tools;
    std::set<std::string> computers;
    std::set<Trigger> triggers;
    for (const RunRecord& record : all) {
        tools.insert(record.toolID);
        computers.insert(computerOf(record));
        triggers.insert(record.trigger);
    }
    const QLocale locale = localeOf(texts.language());
    for (const std::string& tool : tools)
        into.tools << option(qtText(tool), shown(toolName(texts, tool)));
    for (const std::string& computer : computers)
        into.computers << option(qtText(computer), shown(computer));
    for (const Trigger trigger : triggers)
        into.triggers << option(qtText(rawValue(trigger)), text(keyOf("trigger.", trigger)));
    into.tools = sorted(text("activity.any-tool"), into.tools, locale);
    into.computers = sorted(text("activity.any-computer"), into.computers, locale);
    into.triggers.prepend(option({}, text("activity.any-trigger")));
}

} // namespace vh::app

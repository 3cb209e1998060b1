#include "cli/RunTable.h"

#include "Core/Csv.h"
#include "Core/LocalCalendar.h"
#include "Core/Printable.h"
#include "Core/RunWords.h"
#include "Core/ToolTexts.h"
#include "cli/Console.h"
#include "cli/Table.h"

#include <fmt/format.h>

namespace vh::cli {

void printRuns(const std::vector<RunRecord>& runs, const Texts& texts) {
    const LocalCalendar calendar;
    Table table({{texts.text("cli.column.id")},
                 {texts.text("cli.column.date")},
                 {texts.text("cli.column.tool")},
                 {texts.text("cli.column.outcome")},
                 {texts.text("cli.column.trigger")},
                 {texts.text("cli.column.summary"), Align::left, true}});
    for (const RunRecord& run : runs)
        table.add({run.id.text().substr(0, 8), timestamp(run.startedAt, calendar).substr(0, 16),
                   printable(toolName(texts, run.toolID)),
                   texts.text(fmt::format("outcome.{}", rawValue(run.outcome))),
                   texts.text(fmt::format("trigger.{}", rawValue(run.trigger))),
                   printable(summaryOf(run, texts))});
    print(table.text(outputWidth()));
}

} // namespace vh::cli

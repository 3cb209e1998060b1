#include "Core/JournalLines.h"

#include "Core/InterruptedStep.h"
#include "Core/RunLog.h"

#include <algorithm>

namespace vh {

namespace {

struct TakeIn {
    Journal& journal;
    bool& hasHeader;

    void operator()(JournalHeader header) const {
        journal.header = std::move(header);
        hasHeader = true;
    }
    void operator()(JournalIntent intent) const { journal.open.push_back(std::move(intent.goal)); }
    void operator()(RunFileRow row) const {
        // Steps mostly end in turn, so the one that ended is found at the end.
        const auto begun =
            std::ranges::find(journal.open.rbegin(), journal.open.rend(), row.path, &RunFileRow::path);
        if (begun != journal.open.rend())
            journal.open.erase(std::next(begun).base());
        journal.rows.push_back(std::move(row));
    }
    void operator()(RunRecord record) const { journal.finished = std::move(record); }
};

} // namespace

std::vector<RunFileRow> Journal::allRows() const {
    std::vector<RunFileRow> all = rows;
    for (const auto& goal : open)
        all.push_back(afterInterruption(goal, header.startedAt));
    return all;
}

std::optional<Journal> readJournal(std::string_view text) {
    Journal journal;
    bool hasHeader = false;
    JsonDocument parser;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        try {
            std::visit(TakeIn{journal, hasHeader}, decodeJson<JournalLine>(parser.parse(line)));
        } catch (const DecodeError&) {
            // One damaged line never costs the others.
        }
    }
    return hasHeader ? std::optional(std::move(journal)) : std::nullopt;
}

RunRecord interruptedRecord(const Journal& journal, RunWords words) {
    return RunRecord{.id = journal.header.id,
                     .toolID = journal.header.toolID,
                     .startedAt = journal.header.startedAt,
                     .outcome = Outcome::failed,
                     .trigger = journal.header.trigger,
                     .summary = std::move(words.summary),
                     .computer = RunLog::thisComputer(),
                     .details = journal.header.details,
                     .facts = std::move(words.facts)};
}

} // namespace vh

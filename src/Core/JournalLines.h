#pragma once

#include "Core/Codec.h"
#include "Core/RunFiles.h"
#include "Core/RunRecord.h"
#include "Core/RunWords.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vh {

struct JournalHeader {
    Uuid id;
    std::string toolID;
    Trigger trigger = Trigger::manual;
    Date startedAt;
    std::string title;
    std::optional<std::map<std::string, std::string>> details;
};

/// A step is about to be taken.
struct JournalIntent {
    RunFileRow goal; ///< the row that it leaves when it succeeds, as far as that is known
};

/// A run's track is one of these a line: the header first, an intent before and a row after each step, the record at
/// the end.
using JournalLine = std::variant<JournalHeader, JournalIntent, RunFileRow, RunRecord>;

template <>
inline constexpr auto describe<JournalHeader> = record(field("id", &JournalHeader::id),
                                                       field("toolID", &JournalHeader::toolID),
                                                       field("trigger", &JournalHeader::trigger),
                                                       field("startedAt", &JournalHeader::startedAt),
                                                       field("title", &JournalHeader::title),
                                                       field("details", &JournalHeader::details));
template <>
inline constexpr auto describe<JournalIntent> = record(field("goal", &JournalIntent::goal));
template <>
inline constexpr auto
    describe<JournalLine> = taggedUnion(unionCase<JournalHeader>("begin"), unionCase<JournalIntent>("step"),
                                        unionCase<RunFileRow>("row"), unionCase<RunRecord>("finish"));

/// A track that was read.
struct Journal {
    JournalHeader header;
    std::vector<RunFileRow> rows;
    std::vector<RunFileRow> open; ///< goals of the steps begun and not known to have ended
    std::optional<RunRecord> finished;

    /// All rows; a step that never ended gives what can be found out about it now.
    std::vector<RunFileRow> allRows() const;
};

/// Damaged lines are left out. Nothing when the header cannot be read: such a run had not begun.
std::optional<Journal> readJournal(std::string_view text);

/// What stands in the log for a run that was killed. Its duration is not known and counts as none.
RunRecord interruptedRecord(const Journal& journal, RunWords words);

} // namespace vh

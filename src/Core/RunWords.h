#pragma once

#include "Core/Message.h"
#include "Core/RunRecord.h"

#include <optional>
#include <string>
#include <vector>

namespace vh {

/// What a run says when it ends: its words as they stand in the record, and what they are made of, so that a later
/// reader sees them in another language.
struct RunWords {
    /// Words that are the same in every language.
    RunWords(std::string text) : summary(std::move(text)) {}
    RunWords(const char* text) : summary(text) {}
    /// `problems` are the lines of RunDetail::errors.
    RunWords(const Messages& sentences, const Texts& texts, const Messages& problems = {});

    std::string summary;
    std::string problems;             ///< one a line
    std::optional<std::string> facts; ///< for RunRecord::facts
};

/// As many as a record tells; the list of files holds all.
Messages firstProblems(Messages problems);

/// What the record says, in the language of `texts`; in the words that it was written in when nothing else is known.
std::string summaryOf(const RunRecord& record, const Texts& texts);
/// The same of a detail, of which only the problems are words.
std::optional<std::string> detailOf(const RunRecord& record, RunDetail detail, const Texts& texts);
/// The facts themselves, to say them in another record; the record's own words where it has none.
Messages sentencesOf(const RunRecord& record);
Messages problemsOf(const RunRecord& record);

} // namespace vh

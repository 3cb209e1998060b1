#pragma once

#include "Core/RunFilter.h"

#include <optional>
#include <string>
#include <vector>

namespace vh::app {
class Session;
}

namespace vh::cli {

class CommandLine;
class Verb;

/// The words that choose runs, shared by every verb that lists them.
struct RunFilterOptions {
    std::string tool, period, from, to, outcome, computer, trigger, text;

    void addTo(Verb& verb, const CommandLine& line);
    /// Throws UsageError for a word that is none of those offered.
    RunFilter filter(const LocalCalendar& calendar) const;
};

/// The newest runs of the log that match, at most `most`, newest first.
std::vector<RunRecord> matchingRuns(app::Session& session, const RunFilter& filter, size_t most);

} // namespace vh::cli

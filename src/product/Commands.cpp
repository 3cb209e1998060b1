#include "cli/Commands.h"

#include "cli/CommandLine.h"

namespace vh::cli {

std::span<const Command> commands() {
    static constexpr Command table[] = {
        {"completions", "cli.completions", describeCompletions},
        {"copy", "cli.copy", describeCopy},
        {"flow", "cli.flow", describeFlow},
        {"follow-ups", "cli.follow-ups", describeFollowUps},
        {"hash", "cli.hash", describeHash},
        {"helper", "cli.helper", describeHelper},
        {"junk", "cli.junk", describeJunk},
        {"mail", "cli.mail", describeMail},
        {"maintenance", "cli.maintenance", describeMaintenance},
        {"open", "cli.open", describeOpen},
        {"optimize", "cli.optimize", describeOptimize},
        {"overview", "cli.overview", describeOverview},
        {"runs", "cli.runs", describeRuns},
        {"schedule", "cli.schedule", describeSchedule},
        {"script", "cli.script", describeScript},
        {"serve", "cli.serve", describeServe},
        {"sync", "cli.sync", describeSync},
        {"tools", "cli.tools", describeTools},
    };
    return table;
}

} // namespace vh::cli

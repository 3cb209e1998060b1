#include "cli/Commands.h"

#include "cli/CommandLine.h"

namespace vh::cli {

std::span<const Command> commands() {
    static constexpr Command table[] = {
        {"junk", "cli.junk", describeJunk},
        {"open", "cli.open", describeOpen},
        {"overview", "cli.overview", describeOverview},
        {"runs", "cli.runs", describeRuns},
        {"serve", "cli.serve", describeServe},
        {"tools", "cli.tools", describeTools},
    };
    return table;
}

} // namespace vh::cli

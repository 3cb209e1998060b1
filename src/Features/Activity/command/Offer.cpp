#include "cli/CommandOffer.h"

namespace vh::cli {

void describeRuns(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"runs", "cli.runs", cli::describeRuns}};

} // namespace

extern const cli::CommandOffer ActivityCommand;
constinit const cli::CommandOffer ActivityCommand{nouns};

} // namespace vh::features

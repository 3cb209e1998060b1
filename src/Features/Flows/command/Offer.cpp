#include "cli/CommandOffer.h"

namespace vh::cli {

void describeFlow(Verb& noun, CommandLine& line);
void describeOpen(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"flow", "cli.flow", cli::describeFlow},
                               {"open", "cli.open", cli::describeOpen}};

} // namespace

extern const cli::CommandOffer FlowsCommand;
constinit const cli::CommandOffer FlowsCommand{nouns};

} // namespace vh::features

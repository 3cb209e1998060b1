#include "cli/CommandOffer.h"

namespace vh::cli {

void describeOptimize(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"optimize", "cli.optimize", cli::describeOptimize}};

} // namespace

extern const cli::CommandOffer OptimizeCommand;
constinit const cli::CommandOffer OptimizeCommand{nouns};

} // namespace vh::features

#include "cli/CommandOffer.h"

namespace vh::cli {

void describeOverview(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"overview", "cli.overview", cli::describeOverview}};

} // namespace

extern const cli::CommandOffer HomeCommand;
constinit const cli::CommandOffer HomeCommand{nouns};

} // namespace vh::features

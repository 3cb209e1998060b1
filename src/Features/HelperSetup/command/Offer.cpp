#include "cli/CommandOffer.h"

namespace vh::cli {

void describeHelper(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"helper", "cli.helper", cli::describeHelper}};

} // namespace

extern const cli::CommandOffer HelperSetupCommand;
constinit const cli::CommandOffer HelperSetupCommand{nouns};

} // namespace vh::features

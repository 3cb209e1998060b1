#include "cli/CommandOffer.h"

namespace vh::cli {

void describeScript(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"script", "cli.script", cli::describeScript}};

} // namespace

extern const cli::CommandOffer ScriptsCommand;
constinit const cli::CommandOffer ScriptsCommand{nouns};

} // namespace vh::features

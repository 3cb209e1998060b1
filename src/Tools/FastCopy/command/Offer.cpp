#include "cli/CommandOffer.h"

namespace vh::cli {

void describeCopy(Verb& noun, CommandLine& line);
void describeHash(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"copy", "cli.copy", cli::describeCopy},
                               {"hash", "cli.hash", cli::describeHash}};

} // namespace

extern const cli::CommandOffer FastCopyCommand;
constinit const cli::CommandOffer FastCopyCommand{nouns};

} // namespace vh::features

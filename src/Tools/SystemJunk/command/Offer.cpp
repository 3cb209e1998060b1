#include "cli/CommandOffer.h"

namespace vh::cli {

void describeJunk(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"junk", "cli.junk", cli::describeJunk}};

} // namespace

extern const cli::CommandOffer SystemJunkCommand;
constinit const cli::CommandOffer SystemJunkCommand{nouns};

} // namespace vh::features

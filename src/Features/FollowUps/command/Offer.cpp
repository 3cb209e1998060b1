#include "cli/CommandOffer.h"

namespace vh::cli {

void describeFollowUps(Verb& noun, CommandLine& line);
void describeMail(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"follow-ups", "cli.follow-ups", cli::describeFollowUps},
                               {"mail", "cli.mail", cli::describeMail}};

} // namespace

extern const cli::CommandOffer FollowUpsCommand;
constinit const cli::CommandOffer FollowUpsCommand{nouns};

} // namespace vh::features

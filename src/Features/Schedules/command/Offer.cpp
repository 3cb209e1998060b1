#include "cli/CommandOffer.h"

namespace vh::cli {

void describeSchedule(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"schedule", "cli.schedule", cli::describeSchedule}};

} // namespace

extern const cli::CommandOffer SchedulesCommand;
constinit const cli::CommandOffer SchedulesCommand{nouns};

} // namespace vh::features

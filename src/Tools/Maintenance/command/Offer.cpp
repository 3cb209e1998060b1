#include "cli/CommandOffer.h"

namespace vh::cli {

void describeMaintenance(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"maintenance", "cli.maintenance", cli::describeMaintenance}};

} // namespace

extern const cli::CommandOffer MaintenanceCommand;
constinit const cli::CommandOffer MaintenanceCommand{nouns};

} // namespace vh::features

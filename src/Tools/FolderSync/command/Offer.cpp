#include "cli/CommandOffer.h"

namespace vh::cli {

void describeSync(Verb& noun, CommandLine& line);

} // namespace vh::cli

namespace vh::features {

namespace {

constexpr cli::Command nouns[]{{"sync", "cli.sync", cli::describeSync}};

} // namespace

extern const cli::CommandOffer FolderSyncCommand;
constinit const cli::CommandOffer FolderSyncCommand{nouns};

} // namespace vh::features

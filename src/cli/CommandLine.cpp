#include "cli/CommandLine.h"

#include "Core/Texts.h"
#include "Platform/SystemError.h"
#include "Platform/Terminal.h"
#include "app/Session.h"
#include "cli/Console.h"

#include <CLI/CLI.hpp>

namespace vh::cli {

std::string CommandLine::text(std::string_view key) const {
    return session_.texts().text(key);
}

void CommandLine::on(CLI::App* verb, Action action) {
    verb->add_flag("--json", json_, text("cli.json"));
    verb->callback([this, action = std::move(action)] { action_ = action; });
}

Exit CommandLine::run(int argc, const char* const* argv) {
    CLI::App app(text("cli.about"), "varnholt");
    app.set_version_flag("--version", "varnholt " VH_VERSION);
    app.require_subcommand(1);
    const std::string_view noun = argc > 1 ? argv[1] : "";
    for (const Command& command : commands()) {
        CLI::App* sub = app.add_subcommand(std::string(command.noun), text(command.helpKey));
        // The words of the other nouns are not needed, and there will be dozens of them.
        if (command.noun == noun)
            command.describe(*sub, *this);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? Exit::done : Exit::usage;
    }
    return perform();
}

Exit CommandLine::perform() {
    try {
        Context context{session_, cancelOnInterrupt(), json_ ? Format::json : Format::people};
        const Exit exit = action_(context);
        flush();
        return exit;
    } catch (const Cancelled&) {
        complain(text("cli.cancelled"));
        return Exit::cancelled;
    } catch (const std::exception& error) {
        complain(error.what());
        return Exit::failed;
    }
}

} // namespace vh::cli

#include "cli/CommandLine.h"

#include "Core/Printable.h"
#include "Core/Texts.h"
#include "HelperKit/HelperClientError.h"
#include "Platform/Terminal.h"
#include "app/Session.h"
#include "cli/Console.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

namespace vh::cli {

std::string CommandLine::text(std::string_view key) const {
    return session_.texts().text(key);
}

/// The words that every help page repeats.
void CommandLine::translateLabels(CLI::App& app) const {
    for (const auto& [label, key] : {std::pair{"Usage", "cli.label.usage"},
                                     {"OPTIONS", "cli.label.options-word"},
                                     {"Options", "cli.label.options"},
                                     {"SUBCOMMAND", "cli.label.command-word"},
                                     {"SUBCOMMANDS", "cli.label.command-word"},
                                     {"Subcommands", "cli.label.commands"},
                                     {"Positionals", "cli.label.arguments"},
                                     {"REQUIRED", "cli.label.required"}})
        app.get_formatter()->label(label, text(key));
}

void CommandLine::on(CLI::App* verb, Action action) {
    verb->add_flag("--json", json_, text("cli.json"));
    verb->callback([this, verb, action = std::move(action)] {
        if (verb->get_subcommands().empty()) // a noun that stands alone too leaves it to its verb
            action_ = action;
    });
}

void CommandLine::onChange(CLI::App* verb, Action action) {
    on(verb, [action = std::move(action)](Context& context) {
        const Folders& folders = context.session.folders();
        if (!folders.homeIsAnothers)
            return action(context);
        complain(context.session.texts().text("core.home-is-anothers", {{"home", printable(folders.home)}}));
        return Exit::failed;
    });
}

Exit CommandLine::run(int argc, const char* const* argv) {
    const std::string_view noun = argc > 1 ? argv[1] : "";
    if (!noun.empty() && !noun.starts_with('-') &&
        std::ranges::find(commands(), noun, &Command::noun) == commands().end()) {
        complain(session_.texts().text("cli.unknown-noun", {{"noun", printable(noun)}}));
        return Exit::usage;
    }
    CLI::App app(text("cli.about"), "varnholt");
    app.set_help_flag("-h,--help", text("cli.help"));
    app.set_version_flag("--version", "varnholt " VH_VERSION, text("cli.version"));
    app.require_subcommand(1);
    translateLabels(app);
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
    } catch (const UsageError& error) {
        complain(error.what());
        return Exit::usage;
    } catch (const helper::HelperClientError& error) {
        complain(printable(error.text(session_.texts())));
        return Exit::failed;
    } catch (const std::exception& error) {
        complain(printable(error.what()));
        return Exit::failed;
    }
}

std::string absolutePath(const std::string& word) {
    namespace fs = std::filesystem;
    fs::path path = fs::absolute(word);
    if (std::ranges::find(path, fs::path("..")) != path.end()) // behind a link it leads elsewhere
        path = path.filename() == ".." ? fs::weakly_canonical(path)
                                       : fs::weakly_canonical(path.parent_path()) / path.filename();
    path = path.lexically_normal();
    return (path.has_filename() || path == path.root_path() ? path : path.parent_path()).string();
}

} // namespace vh::cli

#include "cli/CommandLine.h"

#include "Core/ErrorMessage.h"
#include "Core/Printable.h"
#include "Core/Texts.h"
#include "Platform/Terminal.h"
#include "app/Session.h"
#include "cli/CommandOffer.h"
#include "cli/Console.h"
#include "cli/HelpPage.h"
#include "cli/WordReader.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace vh::cli {

std::string CommandLine::text(std::string_view key) const {
    return session_.texts().text(key);
}

void CommandLine::on(Verb& verb, Action action) {
    verb.option("--json", &json_, text("cli.json"));
    verb.action = std::move(action);
}

void CommandLine::asks(Verb& verb) {
    verb.option("--yes", &agreed_, text("cli.yes")).shortly('y');
}

void CommandLine::onChange(Verb& verb, Action action) {
    asks(verb);
    on(verb, [action = std::move(action)](Context& context) {
        const Folders& folders = context.session.folders();
        if (!folders.homeIsAnothers)
            return action(context);
        complain(context.session.texts().text("core.home-is-anothers", {{"home", printable(folders.home)}}));
        return Exit::failed;
    });
}

Verb CommandLine::program(std::optional<std::string_view> only) {
    Verb program("varnholt", text("cli.about"));
    for (const Command& command : commands()) {
        Verb& noun = program.verb(std::string(command.noun), text(command.helpKey));
        if (!only || command.noun == only)
            command.describe(noun, *this);
    }
    return program;
}

Exit CommandLine::run(int argc, const char* const* argv) {
    const std::span words(argv, static_cast<size_t>(argc));
    // The words of other nouns are not needed, and there will be dozens of them.
    const Verb program = this->program(argc > 1 ? argv[1] : "");
    try {
        const Asked asked = readWords(program, words.subspan(1), session_.texts());
        if (asked.version)
            print("varnholt " VH_VERSION "\n");
        else if (asked.help)
            print(helpPage(asked.verb, session_.texts()));
        else if (asked.verb.action)
            return perform(asked.verb);
        else {
            // Not done: a script whose verb came out empty has to notice.
            std::fputs(helpPage(asked.verb, session_.texts()).c_str(), stderr);
            return Exit::usage;
        }
        flush();
        return Exit::done;
    } catch (const UsageError& error) {
        complain(error.what());
        return Exit::usage;
    }
}

Exit CommandLine::perform(const Verb& verb) {
    try {
        Context context{session_, cancelOnInterrupt(), json_ ? Format::json : Format::people, agreed_};
        const Exit exit = verb.action(context);
        flush();
        return exit;
    } catch (const Cancelled&) {
        complain(text("cli.cancelled"));
        return Exit::cancelled;
    } catch (const UsageError& error) {
        complain(error.what());
        return Exit::usage;
    } catch (const std::exception& error) {
        complain(printable(worded(messageOf(error), session_.texts())));
        return Exit::failed;
    }
}

void describeCompletions(Verb& noun, CommandLine& line);
void describeServe(Verb& noun, CommandLine& line);
void describeTools(Verb& noun, CommandLine& line);

std::vector<Command> commands() {
    std::vector<Command> all{{"completions", "cli.completions", describeCompletions},
                             {"serve", "cli.serve", describeServe},
                             {"tools", "cli.tools", describeTools}};
    for (const CommandOffer* offer : commandOffers())
        all.insert(all.end(), offer->nouns.begin(), offer->nouns.end());
    std::ranges::sort(all, {}, &Command::noun);
    return all;
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

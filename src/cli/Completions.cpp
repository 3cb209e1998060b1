#include "cli/Completions.h"

#include "cli/Verb.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace vh::cli {

namespace {

/// Calls `visit` with the verb and all below it.
void visitAll(const Verb& verb, const std::function<void(const Verb&)>& visit) {
    visit(verb);
    for (const auto& each : verb.verbs())
        visitAll(*each, visit);
}

std::vector<std::string> spellings(const Option& option) {
    std::vector<std::string> all{option.name};
    if (option.isSwitch())
        all.push_back("--no-" + option.name.substr(2));
    return all;
}

/// All that may follow the verb.
std::vector<std::string> wordsAfter(const Verb& verb) {
    std::vector<std::string> words;
    for (const auto& each : verb.verbs())
        words.push_back(each->name());
    for (const auto& option : verb.options())
        for (std::string& each : spellings(*option))
            words.push_back(std::move(each));
    words.push_back("--help");
    return words;
}

std::string quotedForFish(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return quoted + "'";
}

/// Fish's question whether the words typed so far name the verb.
std::string askedByFish(const Verb& verb) {
    std::string question;
    for (size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
        end = verb.path().find(' ', start);
        if (start > 0)
            question += (question.empty() ? "" : "; and ") + std::string("__fish_seen_subcommand_from ") +
                        verb.path().substr(start, end - start);
    }
    if (question.empty())
        return "__fish_use_subcommand";
    return verb.verbs().empty() ? question : question + "; and __varnholt_is_last";
}

} // namespace

std::string bashCompletions(const Verb& program) {
    std::string paths, values, words;
    visitAll(program, [&](const Verb& verb) {
        paths += (paths.empty() ? "" : " | ") + fmt::format("'{}'", verb.path());
        words += fmt::format("    '{}') words='{}' ;;\n", verb.path(), fmt::join(wordsAfter(verb), " "));
        for (const auto& option : verb.options())
            if (!option->words.empty())
                values += fmt::format("    '{} {}') words='{}' ;;\n", verb.path(), option->name,
                                      fmt::join(option->words, " "));
            else if (!option->isFlag()) // a file, or nothing that could be listed
                values += fmt::format("    '{} {}') return ;;\n", verb.path(), option->name);
    });
    return fmt::format(R"(_varnholt() {{
    local verb={0} words='' each current=${{COMP_WORDS[COMP_CWORD]}} before=${{COMP_WORDS[COMP_CWORD-1]}}
    COMPREPLY=()
    for each in "${{COMP_WORDS[@]:1:$((COMP_CWORD - 1))}}"; do
        case "$verb $each" in
        {1}) verb="$verb $each" ;;
        esac
    done
    case "$verb $before" in
{2}    esac
    [ -n "$words" ] || case "$verb" in
{3}    esac
    COMPREPLY=($(compgen -W "$words" -- "$current"))
}}
complete -o default -F _varnholt {0}
)",
                       program.name(), paths, values, words);
}

std::string fishCompletions(const Verb& program) {
    // Verbs are offered only right behind their noun.
    std::string text = "function __varnholt_is_last\n    test (count (commandline -opc)) -eq 2\nend\n";
    visitAll(program, [&](const Verb& verb) {
        for (const auto& each : verb.verbs())
            text += fmt::format("complete -c {} -n {} -f -a {} -d {}\n", program.name(),
                                quotedForFish(askedByFish(verb)), each->name(), quotedForFish(each->help()));
        std::string question = askedByFish(verb);
        for (const auto& option : verb.options())
            for (const std::string& name : spellings(*option))
                text += fmt::format(
                    "complete -c {} -n {} -l {}{}{} -d {}\n", program.name(), quotedForFish(question),
                    name.substr(2), option->letter ? fmt::format(" -s {}", option->letter) : "",
                    option->isFlag()        ? ""
                    : option->words.empty() ? " -r"
                                            : fmt::format(" -x -a '{}'", fmt::join(option->words, " ")),
                    quotedForFish(option->help));
    });
    return text;
}

} // namespace vh::cli

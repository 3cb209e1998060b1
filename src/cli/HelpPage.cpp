#include "cli/HelpPage.h"

#include "Core/Texts.h"
#include "cli/Table.h"
#include "cli/Verb.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace vh::cli {

namespace {

using Lines = std::vector<std::pair<std::string, std::string>>;

/// "-o, --output FILE" or "--[no-]watch".
std::string spelling(const Option& option) {
    std::string text = option.letter ? fmt::format("-{}, ", option.letter) : "    ";
    if (option.isSwitch())
        return text + "--[no-]" + option.name.substr(2);
    text += option.name;
    if (!option.words.empty())
        text += fmt::format(" {}", fmt::join(option.words, "|"));
    else if (!option.value.empty())
        text += " " + option.value;
    return text + (option.takesMany ? "…" : "");
}

std::string usage(const Verb& verb, const Texts& texts) {
    std::string line = verb.path();
    if (!verb.options().empty())
        line += fmt::format(" [{}]", texts.text("cli.label.options-word"));
    for (const auto& each : verb.arguments()) {
        const std::string name = each->name + (each->takesMany ? "…" : "");
        line += " " + (each->isRequired ? name : "[" + name + "]");
    }
    const std::string command = verb.path() + " " + texts.text("cli.label.command-word");
    if (verb.verbs().empty())
        return line;
    return verb.action ? line + "\n  " + command : command;
}

/// Two columns under a title; wide ones on the left have their help a line below.
std::string section(const std::string& title, const Lines& lines) {
    if (lines.empty())
        return "";
    constexpr size_t widest = 28;
    size_t width = 0;
    for (const auto& [left, right] : lines)
        if (displayWidth(left) <= widest)
            width = std::max(width, displayWidth(left));
    std::string text = "\n" + title + ":\n";
    for (const auto& [left, right] : lines) {
        const size_t used = displayWidth(left);
        const bool fits = used <= width;
        text += "  " + left + (fits ? std::string(width - used, ' ') : "\n  " + std::string(width, ' ')) +
                "  " + right + "\n";
    }
    return text;
}

} // namespace

std::string helpPage(const Verb& verb, const Texts& texts) {
    Lines arguments, options, verbs;
    const auto helpOf = [&](const Option& option) {
        return option.help +
               (option.isRequired && !option.isArgument() ? " " + texts.text("cli.label.required") : "");
    };
    for (const auto& each : verb.arguments())
        arguments.emplace_back(each->name, helpOf(*each));
    for (const auto& each : verb.options())
        options.emplace_back(spelling(*each), helpOf(*each));
    options.emplace_back("-h, --help", texts.text("cli.help"));
    if (verb.path() == verb.name())
        options.emplace_back("    --version", texts.text("cli.version"));
    for (const auto& each : verb.verbs())
        verbs.emplace_back(each->name(), each->help());
    std::string page = verb.help() + "\n\n" + texts.text("cli.label.usage") + ":\n  " + usage(verb, texts) +
                       "\n" + section(texts.text("cli.label.arguments"), arguments) +
                       section(texts.text("cli.label.options"), options) +
                       section(texts.text("cli.label.commands"), verbs);
    if (!verb.examples().empty())
        page += fmt::format("\n{}:\n  {}\n", texts.text("cli.label.examples"),
                            fmt::join(verb.examples(), "\n  "));
    return page;
}

} // namespace vh::cli

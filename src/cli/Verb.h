#pragma once

#include "cli/Exit.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vh::cli {

struct Context;

/// Where the words of an option go. A bool is set by the option's name alone, an optional one by its name or "--no-"
/// before it; all others take a value.
using Target = std::variant<bool*, std::optional<bool>*, std::string*, std::optional<std::string>*,
                            std::vector<std::string>*, int*, std::optional<int>*>;

/// An option ("--output FILE") or an argument ("FILE") of a verb.
struct Option {
    std::string name; ///< with the dashes of an option
    Target target;
    std::string help;
    char letter = 0;                ///< 'o' for "-o"
    std::string value;              ///< what stands for its value in a help page
    std::vector<std::string> words; ///< the only ones that fit; empty for any
    int least = 0, most = 0;        ///< of a number
    bool isRequired = false;
    bool takesMany = false;             ///< all words up to the next option
    std::vector<std::string> adversary; ///< names of options that do not go with it

    Option& shortly(char character);
    Option& required(bool is = true);
    Option& valueName(std::string name);
    Option& oneOf(std::vector<std::string> all);
    /// For a number: both ends fit.
    Option& range(int first, int last);
    Option& many();
    Option& notWith(const Option& other);

    bool isFlag() const;
    bool isSwitch() const;
    bool isArgument() const { return !name.starts_with('-'); }
};

/// A noun of the command line or one of its verbs: what it is called, what it takes and what it does. Help pages and
/// completions are made from it.
class Verb {
public:
    Verb(std::string name, std::string help) : name_(std::move(name)), help_(std::move(help)) {}

    /// What is added stays where it is as long as the verb; so do targets have to.
    Verb& verb(std::string name, std::string help);
    Option& option(std::string name, Target target, std::string help);
    /// A word without a name, by its place. Only the last may be a list.
    Option& argument(std::string name, Target target, std::string help);
    /// Words as somebody would type them, for the help page.
    void example(std::string_view words) { examples_.emplace_back(words); }

    const std::string& name() const { return name_; }
    /// As it is typed, with all that stands before it.
    const std::string& path() const { return path_.empty() ? name_ : path_; }
    const std::string& help() const { return help_; }
    const std::vector<std::unique_ptr<Verb>>& verbs() const { return verbs_; }
    const std::vector<std::unique_ptr<Option>>& options() const { return options_; }
    const std::vector<std::unique_ptr<Option>>& arguments() const { return arguments_; }
    const std::vector<std::string>& examples() const { return examples_; }

    /// Unset where one of its verbs has to follow.
    std::function<Exit(Context&)> action;

private:
    std::string name_, help_, path_;
    std::vector<std::unique_ptr<Verb>> verbs_;
    std::vector<std::unique_ptr<Option>> options_, arguments_;
    std::vector<std::string> examples_;
};

} // namespace vh::cli

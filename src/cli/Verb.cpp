#include "cli/Verb.h"

namespace vh::cli {

Option& Option::shortly(char character) {
    letter = character;
    return *this;
}

Option& Option::required(bool is) {
    isRequired = is;
    return *this;
}

Option& Option::valueName(std::string text) {
    value = std::move(text);
    return *this;
}

Option& Option::oneOf(std::vector<std::string> all) {
    words = std::move(all);
    return *this;
}

Option& Option::range(int first, int last) {
    least = first;
    most = last;
    return *this;
}

Option& Option::many() {
    takesMany = true;
    return *this;
}

Option& Option::notWith(const Option& other) {
    adversary.push_back(other.name);
    return *this;
}

bool Option::isFlag() const {
    return std::holds_alternative<bool*>(target) || isSwitch();
}

bool Option::isSwitch() const {
    return std::holds_alternative<std::optional<bool>*>(target);
}

Verb& Verb::verb(std::string name, std::string help) {
    std::string path = this->path() + " " + name;
    Verb& added = *verbs_.emplace_back(std::make_unique<Verb>(std::move(name), std::move(help)));
    added.path_ = std::move(path);
    return added;
}

Option& Verb::option(std::string name, Target target, std::string help) {
    return *options_.emplace_back(std::make_unique<Option>(Option{std::move(name), target, std::move(help)}));
}

Option& Verb::argument(std::string name, Target target, std::string help) {
    Option& added =
        *arguments_.emplace_back(std::make_unique<Option>(Option{std::move(name), target, std::move(help)}));
    added.takesMany = std::holds_alternative<std::vector<std::string>*>(target);
    return added;
}

} // namespace vh::cli

#include "Platform/Linux/MappedNames.h"

namespace vh {

namespace {

/// The kernel writes a line end in a path as "\012" and leaves every other byte as it is.
std::string replaceAll(std::string text, std::string_view what, std::string_view with) {
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

} // namespace

void addMappedNames(std::string_view maps, const std::string& prefix, std::set<std::string>& names) {
    // Only a path starts with a slash, and it comes after blanks.
    const std::string wanted = " " + replaceAll(prefix, "\n", "\\012");
    for (size_t at = maps.find(wanted); at != std::string_view::npos; at = maps.find(wanted, at)) {
        at += wanted.size();
        const std::string_view rest = maps.substr(at, maps.find('\n', at) - at);
        if (!rest.ends_with(" (deleted)"))
            names.insert(replaceAll(std::string(rest.substr(0, rest.find('/'))), "\\012", "\n"));
    }
}

} // namespace vh

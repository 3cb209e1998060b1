#include "helper/Options.h"

#include <charconv>
#include <stdexcept>
#include <string_view>

namespace vh::helper {

namespace {

std::chrono::seconds readSeconds(std::string_view word) {
    int seconds = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), seconds);
    if (error != std::errc() || end != word.data() + word.size() || seconds <= 0)
        throw std::invalid_argument("Not a number of seconds: " + std::string(word));
    return std::chrono::seconds(seconds);
}

} // namespace

const char* const usage =
    "varnholt-helper [--idle SECONDS]         serves the system bus until nobody asks any more\n"
    "varnholt-helper install [--root DIR]     makes itself known to the system\n"
    "varnholt-helper uninstall [--root DIR]   takes that back\n"
    "varnholt-helper --version\n";

Options readOptions(std::span<const char* const> words) {
    Options options;
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        const auto value = [&] {
            if (++i == words.size())
                throw std::invalid_argument(std::string(word) + " needs a value.");
            return std::string_view(words[i]);
        };
        if (word == "install" || word == "uninstall")
            options.verb = word == "install" ? Options::Verb::install : Options::Verb::uninstall;
        else if (word == "--version")
            options.verb = Options::Verb::version;
        else if (word == "--help")
            options.verb = Options::Verb::help;
        else if (word == "--root")
            options.root = value();
        else if (word == "--idle")
            options.idleLimit = readSeconds(value());
        else
            throw std::invalid_argument("Unknown word: " + std::string(word));
    }
    return options;
}

} // namespace vh::helper

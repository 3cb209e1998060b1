#pragma once

#include <chrono>
#include <span>
#include <string>

namespace vh::helper {

/// What the helper's program was asked for.
struct Options {
    enum class Verb { serve, install, uninstall, version, help };

    Verb verb = Verb::serve;
    std::string root; ///< of install and uninstall: the folder that stands for "/"
    std::chrono::seconds idleLimit{30};
};

extern const char* const usage;

/// The words after the program's name. Throws std::invalid_argument.
Options readOptions(std::span<const char* const> words);

} // namespace vh::helper

#pragma once

#include <string>

namespace vh::cli {

class Verb;

/// What a shell has to read so that the Tab key completes the words of the program. That for bash serves zsh too.
std::string bashCompletions(const Verb& program);
std::string fishCompletions(const Verb& program);

} // namespace vh::cli

#pragma once

#include "cli/Verb.h"

#include <span>
#include <string>

namespace vh {
class Texts;
}

namespace vh::cli {

/// What the words of the command line ask for.
struct Asked {
    const Verb& verb; ///< what they name, though it may have to be followed by one of its own
    bool help = false;
    bool version = false;
};

/// Reads the words that follow the program's name, and sets what they say where each option wants it. Words that ask
/// for help need not be complete. Throws UsageError, which says what is wrong, what may have been meant and how to get
/// help.
///
/// "--name value" and "--name=value", "-o value" and "-ovalue", "-yo value"; after "--" all words are arguments.
Asked readWords(const Verb& program, std::span<const char* const> words, const Texts& texts);

/// The candidate that a mistyped word is nearest to; empty when none is near.
std::string nearestWord(const std::string& word, const std::vector<std::string>& candidates);

} // namespace vh::cli

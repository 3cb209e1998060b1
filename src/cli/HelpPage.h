#pragma once

#include <string>

namespace vh {
class Texts;
}

namespace vh::cli {

class Verb;

/// What --help shows: what the verb does, how it is typed, and what it takes.
std::string helpPage(const Verb& verb, const Texts& texts);

} // namespace vh::cli

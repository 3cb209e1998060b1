#pragma once

#include <functional>

namespace vh::cli {

class CommandLine;
class Verb;

/// The verb "verify" of the noun "copy". `hasWords` tells whether the noun got words of its own, to which the verb does
/// not fit.
void describeCopyVerify(Verb& copy, CommandLine& line, std::function<bool()> hasWords);

} // namespace vh::cli

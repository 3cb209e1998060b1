#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace vh::cli {

class CommandLine;

/// The verb "verify" of the noun "copy". `hasWords` tells whether the noun got words of its own, to which the verb does
/// not fit.
void describeCopyVerify(CLI::App& copy, CommandLine& line, std::function<bool()> hasWords);

} // namespace vh::cli

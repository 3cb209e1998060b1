#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace vh::cli {

class CommandLine;
class Verb;

/// One noun of the command line.
struct Command {
    std::string_view noun;
    std::string_view helpKey;
    void (*describe)(Verb& noun, CommandLine& line);
};

/// The nouns of a tool or feature: its command/Offer.cpp defines one, by the folder's name and "Command" in the namespace
/// vh::features.
struct CommandOffer {
    std::span<const Command> nouns;
};

/// Those of all features of the product, in its order.
std::span<const CommandOffer* const> commandOffers();

/// All nouns, sorted: those of the features and the command line's own.
std::vector<Command> commands();

} // namespace vh::cli

#pragma once

#include "Core/Message.h"

#include <string>
#include <string_view>

namespace vh {

/// Plain reasons that others ask for.
namespace plain {
inline constexpr std::string_view protectedBySystem = "protected by macOS";
inline constexpr std::string_view inUse = "in use by an app";
} // namespace plain

/// An error line of a clean, taken apart at its first ": ".
struct CleanErrorLine {
    std::string_view path;
    std::string_view text;
};
CleanErrorLine splitError(std::string_view line);

/// Why an item was not removed, in one of few plain words, from an error line of a clean.
std::string plainReason(std::string_view line);
/// The same from the text behind the path, for who knows the path.
std::string plainReasonOfText(std::string_view text);

/// The key of a plain reason's text; "is open: " and a name give the key that takes a name.
std::string_view localizedReasonKey(std::string_view reason);

Message reasonMessage(std::string_view reason);
/// A plain reason in the person's language.
std::string localizedReason(const Texts& texts, std::string_view reason);

} // namespace vh

#include "Core/MailAddress.h"

#include "Core/Printable.h"

#include <algorithm>
#include <cstddef>

namespace vh {

namespace {

constexpr size_t longestLocal = 64;
constexpr size_t longestAddress = 254;
constexpr size_t longestLabel = 63;

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isBeyondAscii(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

bool isAtomCharacter(char c) {
    constexpr std::string_view marks = "!#$%&'*+-/=?^_`{|}~";
    return isLetterOrDigit(c) || isBeyondAscii(c) || marks.find(c) != std::string_view::npos;
}

bool isAtom(std::string_view atom) {
    return !atom.empty() && std::ranges::all_of(atom, isAtomCharacter);
}

bool isLabel(std::string_view label) {
    return !label.empty() && label.size() <= longestLabel && label.front() != '-' && label.back() != '-' &&
           std::ranges::all_of(label,
                               [](char c) { return isLetterOrDigit(c) || isBeyondAscii(c) || c == '-'; });
}

template <class IsPart>
bool areParts(std::string_view text, IsPart isPart) {
    while (true) {
        const size_t dot = text.find('.');
        if (!isPart(text.substr(0, dot)))
            return false;
        if (dot == std::string_view::npos)
            return true;
        text.remove_prefix(dot + 1);
    }
}

} // namespace

bool MailAddress::isValid(std::string_view address) {
    const size_t at = address.rfind('@');
    if (at == std::string_view::npos || at > longestLocal || address.size() > longestAddress)
        return false;
    // Neither bytes that are no text nor what would change how a line reads.
    if (printable(address) != address)
        return false;
    return areParts(address.substr(0, at), isAtom) && areParts(address.substr(at + 1), isLabel);
}

} // namespace vh

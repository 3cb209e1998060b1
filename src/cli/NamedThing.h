#pragma once

#include "Core/Fold.h"
#include "Core/Printable.h"
#include "Core/Uuid.h"
#include "app/Session.h"
#include "cli/CommandLine.h"
#include "cli/Console.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh::cli {

/// Whether a word as a person types it is the identifier or its beginning, of at least four characters.
bool isIdentifier(const Uuid& id, std::string_view word);

/// What is said, with "word" and "count", when a word names none or several.
struct NamingFaults {
    std::string_view none, several;
};

/// The one that a word names: identifier, its beginning or, when things have one, `name`. Complains when it is none or
/// more than one.
template <class Thing>
std::optional<Thing> findNamed(Context& context, std::vector<Thing> all, const std::string& word,
                               NamingFaults faults, std::string Thing::*name = nullptr) {
    const std::string folded = foldCase(word);
    std::erase_if(all, [&](const Thing& each) {
        return !isIdentifier(each.id, word) && !(name && foldCase(each.*name) == folded);
    });
    if (all.size() == 1)
        return std::move(all.front());
    complain(context.session.texts().text(all.empty() ? faults.none : faults.several,
                                          {{"word", printable(word)}, {"count", all.size()}}));
    return std::nullopt;
}

} // namespace vh::cli

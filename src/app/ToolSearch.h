#pragma once

#include "Core/Language.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace vh {
struct ToolDescriptor;
}

namespace vh::app {

/// Finds tools by their names, summaries and identifiers, former ones included, in every language; case and accents
/// do not count.
class ToolSearch {
public:
    /// The tools that hold every word of `text`, best match first, names in `language` before those in others; none for
    /// an empty text.
    std::vector<const ToolDescriptor*> find(std::string_view text, Language language);
    /// The tool whose whole name in any language is `name`; nullptr for none.
    const ToolDescriptor* named(std::string_view name);

private:
    struct Entry {
        const ToolDescriptor* tool;
        std::array<std::string, allLanguages.size()> names; ///< folded
        std::string rest;                                   ///< folded
    };
    void build();

    std::vector<Entry> entries_; ///< made when first asked
};

} // namespace vh::app

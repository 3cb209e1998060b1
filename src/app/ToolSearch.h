#pragma once

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
    /// The tools that hold every word of `text`, best match first; none for an empty text.
    std::vector<const ToolDescriptor*> find(std::string_view text);

private:
    struct Entry {
        const ToolDescriptor* tool;
        std::vector<std::string> names; ///< folded
        std::string rest;               ///< folded
    };
    void build();

    std::vector<Entry> entries_; ///< made when first asked
};

} // namespace vh::app

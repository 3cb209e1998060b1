#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace vh::junk {

/// Which of the user's folders a root is; it gives the items' category and the rules that hold there.
enum class RootKind { caches, logs, temporary, other };

/// "Caches", "Logs", "Temporary" or "Junk".
std::string_view categoryName(RootKind kind);

/// One kind of entry that is never listed and never removed.
struct KeepRule {
    std::string_view pattern; ///< a whole name, or one that ends in "*" and stands for what begins so
    std::set<RootKind> where; ///< empty: everywhere
    std::string_view why;
};

std::span<const KeepRule> keepRules();

/// The first rule that keeps an entry of this name, nullptr when none does.
const KeepRule* keepRuleFor(std::string_view name, RootKind kind);

/// The names that are denied whatever the root.
std::set<std::string> defaultDeniedBasenames();

} // namespace vh::junk

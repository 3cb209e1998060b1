#include "Tools/SystemJunk/command/JunkSelection.h"

#include "Core/Fold.h"
#include "Core/PathAllowlist.h"

namespace vh::cli {

JunkSelection selectJunk(const ScanReport& report, const JunkWords& words, const std::string& folder) {
    std::set<Uuid> chosen; ///< by their category
    std::set<Uuid> named;
    JunkSelection selection;
    const auto choose = [&](const std::string& word, std::set<Uuid>& items, auto isMeant) {
        bool found = false;
        for (const ScanItem& item : report.items)
            if (isMeant(item)) {
                items.insert(item.id);
                found = true;
            }
        if (!found)
            selection.unmatched.push_back(word);
    };
    for (const std::string& category : words.categories)
        choose(category, chosen, [wanted = foldCase(category)](const ScanItem& item) {
            return foldCase(item.category) == wanted;
        });
    for (const std::string& path : words.paths)
        choose(path, named,
               [wanted = PathAllowlist::normalize(
                    path.starts_with('/') || path.starts_with('~') ? path : folder + "/" + path)](
                   const ScanItem& item) { return PathAllowlist::normalize(item.path) == wanted; });
    for (const ScanItem& item : report.items) {
        const bool isLeftOut = item.recency != Recency::settled && !words.recent;
        if (named.contains(item.id) || (!isLeftOut && (words.all || chosen.contains(item.id))))
            selection.items.push_back(item);
        else if (words.all || chosen.contains(item.id))
            ++selection.leftOut;
    }
    return selection;
}

} // namespace vh::cli

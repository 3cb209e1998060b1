#include "Tools/SystemJunk/command/JunkSelection.h"

#include "Core/Fold.h"
#include "Core/PathAllowlist.h"

namespace vh::cli {

JunkSelection selectJunk(const ScanReport& report, const JunkWords& words, const std::string& folder) {
    std::set<Uuid> chosen;
    JunkSelection selection;
    const auto choose = [&](const std::string& word, auto isMeant) {
        bool found = false;
        for (const ScanItem& item : report.items)
            if (isMeant(item)) {
                chosen.insert(item.id);
                found = true;
            }
        if (!found)
            selection.unmatched.push_back(word);
    };
    for (const std::string& category : words.categories)
        choose(category, [wanted = foldCase(category)](const ScanItem& item) {
            return foldCase(item.category) == wanted;
        });
    for (const std::string& path : words.paths)
        choose(path, [wanted = PathAllowlist::normalize(
                          path.starts_with('/') || path.starts_with('~') ? path : folder + "/" + path)](
                         const ScanItem& item) { return PathAllowlist::normalize(item.path) == wanted; });
    for (const ScanItem& item : report.items)
        if (words.all || chosen.contains(item.id))
            selection.items.push_back(item);
    return selection;
}

} // namespace vh::cli

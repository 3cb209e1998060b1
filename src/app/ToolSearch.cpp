#include "app/ToolSearch.h"

#include "Core/Fold.h"
#include "Core/ModuleCards.h"
#include "Core/ToolCatalog.h"
#include "Core/ToolTexts.h"

#include <algorithm>
#include <optional>

namespace vh::app {

namespace {

std::vector<std::string> wordsOf(std::string_view text) {
    const std::string folded = foldForSearch(text);
    std::vector<std::string> words;
    for (size_t at = 0; (at = folded.find_first_not_of(" \t", at)) != std::string::npos;) {
        const size_t end = std::min(folded.find_first_of(" \t", at), folded.size());
        words.push_back(folded.substr(at, end - at));
        at = end;
    }
    return words;
}

/// Where a word was found; the lower the better.
enum Rank { nameStart, nameWord, name, elsewhere };

Rank rankIn(std::string_view name, std::string_view word) {
    const size_t at = name.find(word);
    if (at == std::string_view::npos)
        return elsewhere;
    if (at == 0)
        return nameStart;
    return name[at - 1] == ' ' ? nameWord : Rank::name;
}

/// The modules and former identifiers behind a tool.
std::string identifiersOf(const ToolDescriptor& tool) {
    std::string all;
    const auto add = [&](std::string_view id) {
        all.append(id).append(" ");
        if (const ModuleCard* card = moduleCard(id))
            all.append(card->displayName).append(" ");
    };
    add(tool.id);
    for (const auto map : {ToolCatalog::mergedInto(), ToolCatalog::replacedBy()})
        for (const auto& [former, present] : map)
            if (present == tool.id)
                add(former);
    return all;
}

} // namespace

std::vector<const ToolDescriptor*> ToolSearch::find(std::string_view text, Language language) {
    build();
    const auto words = wordsOf(text);
    if (words.empty())
        return {};
    struct Hit {
        int rank;
        const ToolDescriptor* tool;
    };
    std::vector<Hit> hits;
    for (const Entry& entry : entries_) {
        int sum = 0;
        const bool holdsAll = std::ranges::all_of(words, [&](const std::string& word) {
            int best = 2 * elsewhere;
            for (size_t i = 0; i < entry.names.size(); ++i)
                best = std::min(best, 2 * rankIn(entry.names[i], word) + (allLanguages[i] != language));
            sum += best;
            return best < 2 * elsewhere || entry.rest.find(word) != std::string::npos;
        });
        if (holdsAll)
            hits.push_back({sum, entry.tool});
    }
    std::ranges::stable_sort(hits, {}, &Hit::rank);
    std::vector<const ToolDescriptor*> tools;
    tools.reserve(hits.size());
    for (const Hit& hit : hits)
        tools.push_back(hit.tool);
    return tools;
}

const ToolDescriptor* ToolSearch::named(std::string_view name) {
    build();
    const auto found = std::ranges::find_if(entries_, [wanted = foldForSearch(name)](const Entry& entry) {
        return std::ranges::find(entry.names, wanted) != entry.names.end();
    });
    return found == entries_.end() ? nullptr : found->tool;
}

void ToolSearch::build() {
    if (!entries_.empty())
        return;
    for (const ToolDescriptor& tool : ToolCatalog::all()) {
        Entry entry{.tool = &tool};
        std::string rest = identifiersOf(tool);
        for (size_t i = 0; i < allLanguages.size(); ++i) {
            const Texts texts(allLanguages[i]);
            entry.names[i] = foldForSearch(toolName(texts, tool.id));
            rest.append(" ").append(toolSummary(texts, tool.id));
        }
        entry.rest = foldForSearch(rest);
        entries_.push_back(std::move(entry));
    }
}

} // namespace vh::app

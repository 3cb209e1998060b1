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

std::vector<const ToolDescriptor*> ToolSearch::find(std::string_view text) {
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
            Rank best = elsewhere;
            for (const std::string& each : entry.names)
                best = std::min(best, rankIn(each, word));
            sum += best;
            return best != elsewhere || entry.rest.find(word) != std::string::npos;
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

void ToolSearch::build() {
    if (!entries_.empty())
        return;
    for (const ToolDescriptor& tool : ToolCatalog::all()) {
        Entry entry{.tool = &tool};
        std::string rest = identifiersOf(tool);
        for (const Language language : allLanguages) {
            const Texts texts(language);
            entry.names.push_back(foldForSearch(toolName(texts, tool.id)));
            rest.append(" ").append(toolSummary(texts, tool.id));
        }
        entry.rest = foldForSearch(rest);
        entries_.push_back(std::move(entry));
    }
}

} // namespace vh::app

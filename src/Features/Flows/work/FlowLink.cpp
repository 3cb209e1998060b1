#include "Core/Fold.h"
#include "Features/Flows/work/FlowTriggers.h"

#include <algorithm>

namespace vh::automation {

std::optional<Uuid> flowOfLink(std::string_view url) {
    constexpr std::string_view address = "varnholt://flow/run?";
    constexpr std::string_view name = "id=";
    if (!foldCase(url.substr(0, address.size())).starts_with(address))
        return std::nullopt;
    std::string_view query = url.substr(address.size());
    query = query.substr(0, query.find('#'));
    while (!query.empty()) {
        const std::string_view item = query.substr(0, query.find('&'));
        if (item.starts_with(name))
            return Uuid::parse(item.substr(name.size()));
        query.remove_prefix(std::min(query.size(), item.size() + 1));
    }
    return std::nullopt;
}

} // namespace vh::automation

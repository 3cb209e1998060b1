#include "app/ScanSelection.h"

#include "Core/Fold.h"
#include "Core/Printable.h"

#include <algorithm>
#include <array>

namespace vh::app {

namespace {

/// What is not listed here follows by name.
constexpr std::array<std::string_view, 4> categoryOrder{"Caches", "Logs", "Temporary", "Junk"};

auto placeOf(const CategoryShare& share) {
    return std::pair(std::ranges::find(categoryOrder, share.name) - categoryOrder.begin(), share.name);
}

} // namespace

void ScanSelection::setReport(ScanReport report) {
    report_ = std::move(report);
    selected_.clear();
}

void ScanSelection::drop(const std::set<std::string>& paths) {
    std::erase_if(report_.items, [&](const ScanItem& item) {
        const bool goes = paths.contains(item.path);
        if (goes)
            selected_.erase(item.id);
        return goes;
    });
}

void ScanSelection::setSearch(std::string_view text) {
    needle_ = foldForSearch(text);
}

ScanSelection::Items ScanSelection::shown() const {
    return itemsWhere([&](const ScanItem& item) {
        return (category_.empty() || item.category == category_) && matchesSearch(item);
    });
}

ScanSelection::Items ScanSelection::selectedItems() const {
    return itemsWhere([&](const ScanItem& item) { return selected_.contains(item.id); });
}

int64_t ScanSelection::selectedBytes() const {
    int64_t bytes = 0;
    for (const ScanItem* item : selectedItems())
        bytes += item->byteSize;
    return bytes;
}

Selected ScanSelection::shownSelection() const {
    return selectionOf(shown());
}

std::vector<CategoryShare> ScanSelection::categories() const {
    std::vector<CategoryShare> shares;
    for (const ScanItem& item : report_.items) {
        auto share = std::ranges::find(shares, item.category, &CategoryShare::name);
        if (share == shares.end())
            share = shares.insert(shares.end(), {.name = item.category});
        share->bytes += item.byteSize;
        ++share->count;
    }
    for (CategoryShare& share : shares)
        share.selected = selectionOf(foundIn(share.name));
    std::ranges::sort(shares, {}, placeOf);
    return shares;
}

void ScanSelection::toggle(const Uuid& id) {
    if (std::ranges::find(report_.items, id, &ScanItem::id) == report_.items.end())
        return;
    if (selected_.erase(id) == 0)
        selected_.insert(id);
}

void ScanSelection::toggleShown() {
    toggleItems(shown());
}

void ScanSelection::toggleCategory(std::string_view name) {
    toggleItems(foundIn(name));
}

bool ScanSelection::matchesSearch(const ScanItem& item) const {
    return needle_.empty() || containsFolded(printable(item.path), needle_);
}

ScanSelection::Items ScanSelection::itemsWhere(const std::function<bool(const ScanItem&)>& wanted) const {
    Items items;
    for (const ScanItem& item : report_.items)
        if (wanted(item))
            items.push_back(&item);
    return items;
}

ScanSelection::Items ScanSelection::foundIn(std::string_view category) const {
    return itemsWhere([&](const ScanItem& item) { return item.category == category && matchesSearch(item); });
}

ScanSelection::Items ScanSelection::together(const Items& items) {
    Items settled;
    std::ranges::copy_if(items, std::back_inserter(settled),
                         [](const ScanItem* item) { return item->recency == Recency::settled; });
    return settled.empty() ? items : settled;
}

Selected ScanSelection::selectionOf(const Items& items) const {
    const auto isSelected = [&](const ScanItem* item) {
        return selected_.contains(item->id);
    };
    if (std::ranges::none_of(items, isSelected))
        return Selected::none;
    return std::ranges::all_of(together(items), isSelected) ? Selected::all : Selected::some;
}

void ScanSelection::toggleItems(const Items& items) {
    const bool clear = selectionOf(items) == Selected::all;
    for (const ScanItem* item : clear ? items : together(items)) {
        if (clear)
            selected_.erase(item->id);
        else
            selected_.insert(item->id);
    }
}

} // namespace vh::app

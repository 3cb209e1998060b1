#pragma once

#include "Core/ScanReport.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vh::app {

/// How much of a group is selected.
enum class Selected { none, some, all };

/// The items of a category.
struct CategoryShare {
    std::string name;
    int64_t bytes = 0;
    int count = 0;
    Selected selected = Selected::none; ///< among those that the search finds
};

/// A report, what is selected of it and what of it is shown. A filter hides items and never selects or clears one.
class ScanSelection {
public:
    const ScanReport& report() const { return report_; }
    const std::set<Uuid>& selected() const { return selected_; }

    /// A new report, of which nothing is selected.
    void setReport(ScanReport report);
    /// Takes items out of the report and the selection.
    void drop(const std::set<std::string>& paths);
    void setSearch(std::string_view text);
    void setCategory(std::string name) { category_ = std::move(name); }

    std::vector<const ScanItem*> shown() const;
    std::vector<const ScanItem*> selectedItems() const;
    int64_t selectedBytes() const;
    Selected shownSelection() const;
    /// In their fixed order.
    std::vector<CategoryShare> categories() const;

    void toggle(const Uuid& id);
    void toggleShown();
    /// What the search finds of a category.
    void toggleCategory(std::string_view name);

private:
    using Items = std::vector<const ScanItem*>;
    bool matchesSearch(const ScanItem& item) const;
    Items itemsWhere(const std::function<bool(const ScanItem&)>& wanted) const;
    Items foundIn(std::string_view category) const;
    Selected selectionOf(const Items& items) const;
    /// Of several that are chosen at once, those that are: what was in use of late is chosen one by one.
    static Items together(const Items& items);
    void toggleItems(const Items& items);

    ScanReport report_;
    std::set<Uuid> selected_;
    std::string needle_; ///< folded
    std::string category_;
};

} // namespace vh::app

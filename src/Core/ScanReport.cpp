#include "Core/ScanReport.h"

#include <cstdio>
#include <cstdlib>

namespace vh {

int64_t ScanReport::totalBytes() const {
    int64_t total = 0;
    for (const auto& item : items)
        if (__builtin_add_overflow(total, item.byteSize, &total)) {
            std::fputs("The sizes of a scan do not fit 64 bits.\n", stderr);
            std::abort();
        }
    return total;
}

ScanReport ScanReport::settled() const {
    ScanReport report = *this;
    std::erase_if(report.items, [](const ScanItem& item) { return item.recency != Recency::settled; });
    return report;
}

ScanReport ScanReport::withoutShared() const {
    ScanReport report = *this;
    std::erase_if(report.items, [](const ScanItem& item) { return item.recency == Recency::recentInShared; });
    return report;
}

CleanSelection CleanSelection::all(const ScanReport& report, RemovalMethod method) {
    CleanSelection selection{{}, method};
    for (const auto& item : report.items)
        selection.itemIDs.insert(item.id);
    return selection;
}

} // namespace vh

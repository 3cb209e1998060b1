#include "Tools/SystemJunk/JunkScanner.h"

#include "Core/Throttle.h"
#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"
#include "Tools/SystemJunk/ItemRecency.h"
#include "Tools/SystemJunk/ItemSize.h"
#include "Tools/SystemJunk/JunkGuard.h"
#include "Tools/SystemJunk/TemporaryRule.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <thread>

namespace vh::junk {

namespace {

struct Found {
    std::string path;
    RootKind kind = RootKind::other;
    FileStatus status;
    size_t root = 0;
    ItemSize size = {};
};

std::vector<std::string> listOf(const std::string& root) {
    try {
        return childNames(root);
    } catch (const SystemError&) {
        return {};
    }
}

/// What may go in the roots, not yet measured, in list order.
class Candidates {
public:
    explicit Candidates(const SystemJunkConfiguration& configuration)
        : configuration_(configuration), guard_(configuration) {}

    std::vector<Found> gather(const CancelToken& cancel) {
        const auto& roots = configuration_.allowlist.allowedPrefixes();
        for (size_t root = 0; root < roots.size(); ++root)
            for (const std::string& name : listOf(roots[root])) {
                cancel.throwIfCancelled();
                consider(name, root);
            }
        return std::move(found_);
    }

private:
    void consider(const std::string& name, size_t root) {
        if (name.starts_with('.'))
            return;
        const std::string& folder = configuration_.allowlist.allowedPrefixes()[root];
        const std::string path = PathAllowlist::normalize(folder + '/' + name);
        if (!configuration_.allowlist.allows(path) || path == folder)
            return;
        const auto status = statusOf(path);
        // What the user cannot write, the user cannot clean.
        if (!status || guard_.reasonToKeep(path, root, *status) || !isWritable(path))
            return;
        found_.push_back({path, configuration_.kinds[root], *status, root});
    }

    const SystemJunkConfiguration& configuration_;
    JunkGuard guard_;
    std::vector<Found> found_;
};

/// Measures on two threads, each taking the next item in turn; a result depends on its item alone.
class Measuring {
public:
    Measuring(std::vector<Found>& found, int maxEntries, const JobControl& control)
        : found_(found), maxEntries_(maxEntries), control_(control) {}

    void run() {
        std::exception_ptr failure;
        {
            std::thread second([&] { failure = work([](size_t) {}); });
            const std::exception_ptr own = work([&](size_t index) { report(index); });
            second.join();
            if (own)
                failure = own;
        }
        if (failure)
            std::rethrow_exception(failure);
    }

private:
    std::exception_ptr work(const auto& before) {
        try {
            for (size_t index = next_++; index < found_.size(); index = next_++) {
                control_.throwIfCancelled();
                before(index);
                measure(found_[index]);
            }
        } catch (...) {
            next_ = found_.size(); // the other one need not go on
            return std::current_exception();
        }
        return nullptr;
    }

    void measure(Found& item) const {
        if (item.status.type == FileType::folder) {
            item.size = measureFolder(item.path, maxEntries_, control_.cancel);
        } else {
            const FileUsage usage = usageOf(item.path).value_or(FileUsage());
            item.size.bytes = item.status.byteSize;
            item.size.usedSeconds = usage.usedSeconds;
            item.size.touchedSeconds = usage.touchedSeconds;
        }
    }

    void report(size_t index) {
        if (reports_.isDue())
            control_.report(static_cast<double>(index) / static_cast<double>(found_.size()),
                            found_[index].path);
    }

    std::vector<Found>& found_;
    const int maxEntries_;
    const JobControl& control_;
    std::atomic<size_t> next_ = 0;
    Throttle reports_;
};

/// For each root that is everybody's, how the system ages what lies there.
std::vector<std::optional<TemporaryRule>> rulesOfShared(const SystemJunkConfiguration& configuration) {
    std::vector<std::optional<TemporaryRule>> rules;
    for (const std::string& root : configuration.allowlist.allowedPrefixes())
        rules.push_back(isSharedFolder(root) ? std::optional(TemporaryRule::ofSystem(root)) : std::nullopt);
    return rules;
}

} // namespace

ScanReport JunkScanner::scan(std::string moduleID, const JobControl& control) const {
    std::vector<Found> found = Candidates(configuration_).gather(control.cancel);
    Measuring(found, configuration_.maxFilesToMeasurePerItem, control).run();

    ScanReport report{std::move(moduleID), {}, configuration_.clock()};
    const auto rules = rulesOfShared(configuration_);
    const int64_t now = std::chrono::floor<std::chrono::seconds>(report.scannedAt).time_since_epoch().count();
    for (Found& item : found) {
        const auto& rule = rules[item.root];
        if (item.size.holdsEndpoint || (rule && rule->keeps(item.path)))
            continue;
        const Recency recency = recencyOf(item.size, rule ? std::optional(rule->age) : std::nullopt, now);
        report.items.push_back({Uuid::random(), std::move(item.path), item.size.bytes,
                                std::string(categoryName(item.kind)), item.status.identity, recency});
    }
    std::ranges::stable_sort(report.items, std::greater(), &ScanItem::byteSize);
    return report;
}

} // namespace vh::junk

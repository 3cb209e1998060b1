#include "Tools/SystemJunk/JunkScanner.h"

#include "Platform/FolderReader.h"
#include "Platform/SystemError.h"
#include "Tools/SystemJunk/ItemSize.h"
#include "Tools/SystemJunk/JunkGuard.h"

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
    bool holdsEndpoint = false;
    int64_t byteSize = 0;
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
        found_.push_back({path, configuration_.kinds[root], *status});
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
        if (item.status.type != FileType::folder) {
            item.byteSize = item.status.byteSize;
            return;
        }
        const ItemSize size = measureFolder(item.path, maxEntries_, control_.cancel);
        item.byteSize = size.bytes;
        item.holdsEndpoint = size.holdsEndpoint;
    }

    void report(size_t index) {
        constexpr std::chrono::milliseconds interval{100};
        const auto now = std::chrono::steady_clock::now();
        if (now - reported_ < interval)
            return;
        reported_ = now;
        control_.report(static_cast<double>(index) / static_cast<double>(found_.size()), found_[index].path);
    }

    std::vector<Found>& found_;
    const int maxEntries_;
    const JobControl& control_;
    std::atomic<size_t> next_ = 0;
    std::chrono::steady_clock::time_point reported_{};
};

} // namespace

ScanReport JunkScanner::scan(std::string moduleID, const JobControl& control) const {
    std::vector<Found> found = Candidates(configuration_).gather(control.cancel);
    Measuring(found, configuration_.maxFilesToMeasurePerItem, control).run();

    ScanReport report{std::move(moduleID), {}, configuration_.clock()};
    for (Found& item : found)
        if (!item.holdsEndpoint)
            report.items.push_back({Uuid::random(), std::move(item.path), item.byteSize,
                                    std::string(categoryName(item.kind)), item.status.identity});
    std::ranges::stable_sort(report.items, std::greater(), &ScanItem::byteSize);
    return report;
}

} // namespace vh::junk

#pragma once

#include "Core/ModuleCards.h"
#include "Core/SuiteModule.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>

namespace vh::app::test {

/// A gate that work stands at until it is opened or the work is cancelled.
class Gate {
public:
    void close() { set(false); }
    void open() { set(true); }
    void pass(const CancelToken& cancel) {
        std::unique_lock guard(lock_);
        ++waiting_;
        while (!isOpen_ && !cancel.isCancelled())
            opened_.wait_for(guard, std::chrono::milliseconds(2));
        --waiting_;
    }
    bool isWaitedAt() {
        const std::lock_guard guard(lock_);
        return waiting_ > 0;
    }

private:
    void set(bool isOpen) {
        const std::lock_guard guard(lock_);
        isOpen_ = isOpen;
        opened_.notify_all();
    }
    std::mutex lock_;
    std::condition_variable opened_;
    bool isOpen_ = true;
    int waiting_ = 0;
};

/// A scan-and-clean module over a list of made-up items.
class FakeModule : public SuiteModule {
public:
    FakeModule() : SuiteModule(*moduleCard("system-junk")) {}

    void add(std::string path, int64_t bytes, std::string category = "Caches", std::string failure = {}) {
        items_.push_back({Uuid::random(), path, bytes, std::move(category), std::nullopt});
        failures_[path] = std::move(failure);
    }

    ScanReport scan(const JobControl& control) override {
        ++scans;
        control.report(0.5, "/home/looking/here");
        scanGate.pass(control.cancel);
        control.throwIfCancelled();
        if (!scanError.empty())
            throw std::runtime_error(scanError);
        return {std::string(id()), items_, Date()};
    }

    CleanResult clean(const CleanSelection& selection, const JobControl& control) override {
        CleanResult result;
        for (size_t i = 0; i < items_.size();) {
            const ScanItem item = items_[i];
            if (!selection.itemIDs.contains(item.id)) {
                ++i;
                continue;
            }
            cleanGate.pass(control.cancel);
            if (!cleanError.empty())
                throw std::runtime_error(cleanError);
            const std::string& failure = failures_[item.path];
            if (failure.empty()) {
                ++result.removedCount;
                result.freedBytes += item.byteSize;
                result.items.push_back({item.path, item.byteSize, {}, {}});
                items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(i));
            } else {
                result.errors.push_back(item.path + ": " + failure);
                result.items.push_back({item.path, item.byteSize, {}, failure});
                ++i;
            }
        }
        return result;
    }

    // Set while nothing works.
    std::string scanError;
    std::string cleanError;
    Gate scanGate;
    Gate cleanGate;
    std::atomic<int> scans = 0;

private:
    std::vector<ScanItem> items_;
    std::map<std::string, std::string> failures_;
};

} // namespace vh::app::test

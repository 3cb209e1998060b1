#include "Features/Flows/FolderArrivals.h"

#include "Platform/Files.h"
#include "Platform/FolderReader.h"
#include "Platform/PartialSuffix.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace vh::flows {

namespace {

/// Changes that come in quick succession are looked at together.
constexpr std::chrono::milliseconds pauseAfterLook{250};
constexpr std::chrono::milliseconds shortestWait{250};
/// How long files that were refused wait before they are offered again.
constexpr std::chrono::milliseconds retryAfter{2000};

/// Names that programs give to what they are still writing.
bool isUnderWay(std::string_view name) {
    static constexpr std::array<std::string_view, 5> endings{partialSuffix, ".part", ".partial",
                                                             ".crdownload", ".download"};
    return name.starts_with('.') || name.ends_with('~') ||
           std::any_of(endings.begin(), endings.end(), [&](std::string_view ending) {
               return name.size() >= ending.size() &&
                      std::equal(
                          ending.begin(), ending.end(), name.end() - static_cast<ptrdiff_t>(ending.size()),
                          [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
           });
}

} // namespace

FolderArrivals::FolderArrivals(MainLoop& loop, OnNewFiles settings, OnReady onReady, Clock clock)
    : loop_(loop), settings_(std::move(settings)), onReady_(std::move(onReady)), clock_(std::move(clock)),
      watcher_(settings_.folder) {
    FolderReader folder(settings_.folder);
    while (const auto entry = folder.next())
        if (entry->type == FileType::file)
            known_.emplace(entry->name);
    watch();
}

void FolderArrivals::watch() {
    watching_ = loop_.watch(watcher_.descriptor(), MainLoop::Readiness::readable, [this] { take(); });
}

void FolderArrivals::take() {
    const FolderChanges changes = watcher_.take();
    if (changes.isGone) {
        isGone_ = true;
        pending_.clear();
        timer_.reset();
        watching_.reset();
        return;
    }
    watching_ = loop_.after(pauseAfterLook, [this] { watch(); });
    if (changes.lostSome)
        lookAtAll();
    else
        for (const std::string& name : changes.names)
            look(name);
    settle();
}

void FolderArrivals::lookAtAll() {
    std::unordered_set<std::string> there;
    try {
        FolderReader folder(settings_.folder);
        while (const auto entry = folder.next())
            there.emplace(entry->name);
    } catch (const SystemError&) {
        return; // on its way out; the watcher tells
    }
    std::erase_if(known_, [&](const std::string& name) { return !there.contains(name); });
    std::erase_if(pending_, [&](const auto& entry) { return !there.contains(entry.first); });
    for (const std::string& name : there)
        if (!known_.contains(name))
            look(name);
}

void FolderArrivals::look(const std::string& name) {
    if (isUnderWay(name) || !acceptsFile(name, settings_.extensions))
        return;
    const auto status = statusOf(settings_.folder + "/" + name);
    if (!status || status->type != FileType::file) {
        known_.erase(name);
        pending_.erase(name);
        return;
    }
    if (known_.contains(name))
        return;
    const auto [place, isNew] = pending_.try_emplace(name);
    Pending& file = place->second;
    if (isNew || file.byteSize != status->byteSize || file.modifiedSeconds != status->modifiedSeconds)
        file = {status->byteSize, status->modifiedSeconds, clock_()};
}

void FolderArrivals::settle() {
    const Date now = clock_();
    const auto isDue = [&](const Pending& file) {
        return now - file.since >= std::chrono::seconds(settings_.settle);
    };
    std::vector<std::string> due;
    for (auto& [name, file] : pending_) {
        file.since = std::min(file.since, now); // the clock may have been turned back
        if (isDue(file))
            due.push_back(name);
    }
    for (const std::string& name : due)
        look(name);
    std::erase_if(due, [&](const std::string& name) {
        const auto place = pending_.find(name);
        return place == pending_.end() || !isDue(place->second);
    });
    wasRefused_ = false;
    if (!due.empty()) {
        std::vector<std::string> files;
        for (const std::string& name : due)
            files.push_back(settings_.folder + "/" + name);
        if (onReady_(files))
            for (const std::string& name : due) {
                known_.insert(name);
                pending_.erase(name);
            }
        else
            wasRefused_ = true;
    }
    keepTime();
}

void FolderArrivals::keepTime() {
    if (pending_.empty()) {
        timer_.reset();
        return;
    }
    using std::chrono::milliseconds;
    milliseconds wait = retryAfter;
    if (!wasRefused_) {
        const auto first =
            std::min_element(pending_.begin(), pending_.end(),
                             [](const auto& a, const auto& b) { return a.second.since < b.second.since; });
        const Date due = first->second.since + std::chrono::seconds(settings_.settle);
        wait = std::max(shortestWait, std::chrono::ceil<milliseconds>(due - clock_()));
    }
    timer_ = loop_.after(wait, [this] { settle(); });
}

} // namespace vh::flows

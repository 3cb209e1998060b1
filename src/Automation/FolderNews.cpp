#include "Automation/FolderNews.h"

#include "Platform/Files.h"
#include "Platform/SystemError.h"

#include <chrono>

namespace vh::automation {

namespace {

constexpr std::chrono::milliseconds together{100};
constexpr std::chrono::seconds tryAgain{30};

} // namespace

FolderNews::FolderNews(MainLoop& loop, std::string folder, std::function<void()> changed)
    : loop_(loop), folder_(std::move(folder)), changed_(std::move(changed)) {
    watch();
}

void FolderNews::watch() {
    watching_.reset();
    watcher_.reset();
    isGone_ = false;
    try {
        makeFolders(folder_);
        watcher_.emplace(folder_);
        watching_ = loop_.watch(watcher_->descriptor(), MainLoop::Readiness::readable, [this] { take(); });
    } catch (const SystemError&) {
        // Without a watch the folder is looked at from time to time.
        isGone_ = true;
        isWaiting_ = true;
        later_ = loop_.after(tryAgain, [this] { say(); });
    }
}

void FolderNews::take() {
    isGone_ |= watcher_->take().isGone;
    if (isWaiting_)
        return;
    isWaiting_ = true;
    later_ = loop_.after(together, [this] { say(); });
}

void FolderNews::say() {
    isWaiting_ = false;
    if (isGone_)
        watch();
    changed_();
}

} // namespace vh::automation

#include "Tools/FolderSync/work/FolderWatcher.h"

#include "Automation/Worker.h"

#include <exception>
#include <optional>

namespace vh::automation {

namespace {

/// Between two looks at what waits, so that a burst costs little.
constexpr std::chrono::milliseconds pause{50};
constexpr std::chrono::minutes longestBurst{5};

} // namespace

/// Shared with a walk that may outlive the watcher.
struct FolderWatcher::State : std::enable_shared_from_this<State> {
    State(MainLoop& l, Worker& w, std::string f, std::string x, std::chrono::milliseconds d, Events e)
        : loop(l), worker(w), folder(std::move(f)), except(std::move(x)), debounce(d), events(std::move(e)) {}

    template <class Work, class Done>
    void onWorker(Work work, Done done);
    void start();
    void listen();
    void look();
    void took(const TreeChanges& changes);
    void changed();
    void say();
    void endTimers();
    void end();
    void drop();
    void letGo();
    void fail(const SystemError& why);

    MainLoop& loop;
    Worker& worker;
    const std::string folder;
    const std::string except;
    const std::chrono::milliseconds debounce;
    const Events events;
    const CancelToken cancel;
    bool isDropped = false;
    bool isRunning = false;
    std::optional<TreeEvents> tree; ///< the worker's while it works, else the main thread's
    MainLoop::Token listening;
    MainLoop::Token pending;
    MainLoop::Token latest;
};

/// Calls `done` unless the watcher has gone by then, or fails.
template <class Work, class Done>
void FolderWatcher::State::onWorker(Work work, Done done) {
    const auto failure = std::make_shared<std::exception_ptr>();
    worker.run(
        [self = shared_from_this(), work, failure] {
            try {
                work(*self);
            } catch (...) {
                *failure = std::current_exception();
            }
        },
        [self = shared_from_this(), done, failure] {
            if (self->isDropped) {
                self->letGo();
                return;
            }
            try {
                if (*failure)
                    std::rethrow_exception(*failure);
            } catch (const SystemError& error) {
                self->fail(error);
                return;
            } catch (const std::exception& error) {
                self->fail(SystemError(self->folder, error.what()));
                return;
            }
            done(*self);
        });
}

void FolderWatcher::State::start() {
    onWorker([](State& self) { self.tree.emplace(self.folder, self.except, self.cancel); },
             [](State& self) {
                 self.isRunning = true;
                 self.listen();
                 self.events.onStarted();
             });
}

void FolderWatcher::State::listen() {
    listening = loop.watch(tree->descriptor(), MainLoop::Readiness::readable, [this] { look(); });
}

void FolderWatcher::State::look() {
    listening.reset();
    const auto changes = std::make_shared<TreeChanges>();
    onWorker([changes](State& self) { *changes = self.tree->take(); },
             [changes](State& self) { self.took(*changes); });
}

void FolderWatcher::State::took(const TreeChanges& changes) {
    if (changes.isGone) {
        end();
        events.onRootChanged();
    } else if (changes.limit) {
        // A part of it would be watched and the rest not, with nothing left for other programs.
        fail(WatchLimitReached(folder, *changes.limit));
    } else {
        if (changes.something)
            changed();
        listening = loop.after(pause, [this] { listen(); });
    }
}

void FolderWatcher::State::changed() {
    pending = loop.after(debounce, [this] { say(); });
    if (!latest)
        latest = loop.after(longestBurst, [this] { say(); });
}

void FolderWatcher::State::say() {
    const auto self = shared_from_this(); // whoever is told may drop the watcher
    pending.reset();
    latest.reset();
    events.onChange();
}

void FolderWatcher::State::endTimers() {
    isRunning = false;
    listening.reset();
    pending.reset();
    latest.reset();
}

void FolderWatcher::State::end() {
    endTimers();
    letGo();
}

/// Of many folders, for which the kernel takes its time.
void FolderWatcher::State::letGo() {
    if (!tree)
        return;
    worker.run([gone = std::make_shared<TreeEvents>(std::move(*tree))] {}, [] {});
    tree.reset();
}

void FolderWatcher::State::drop() {
    isDropped = true;
    cancel.cancel();
    const bool isAtWork = !listening;
    endTimers();
    if (!isAtWork) // else it is done at the end of that
        letGo();
}

void FolderWatcher::State::fail(const SystemError& why) {
    end();
    events.onFailed(why);
}

FolderWatcher::FolderWatcher(MainLoop& loop, Worker& worker, std::string folder, std::string except,
                             std::chrono::milliseconds debounce, Events events)
    : state_(std::make_shared<State>(loop, worker, std::move(folder), std::move(except), debounce,
                                     std::move(events))) {
    state_->start();
}

FolderWatcher::~FolderWatcher() {
    state_->drop();
}

bool FolderWatcher::isRunning() const {
    return state_->isRunning;
}

} // namespace vh::automation

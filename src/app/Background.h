#pragma once

#include "Platform/CancelToken.h"

#include <QObject>
#include <QThreadPool>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <utility>

namespace vh::app {

/// One line of work off the main thread, whose results come back on it. The newest request wins: an older one is
/// cancelled and its result dropped. When the object goes it cancels what runs and waits for its end, so work may use
/// all that outlives the owner; nothing is called any more after that. Declare it last in its owner.
class Background : public QObject {
public:
    /// What work is handed.
    class Task {
    public:
        CancelToken cancel;
        /// Calls `f` on the main thread, before the result, unless a newer request came.
        void tell(std::function<void()> f) const { line_->deliver(number_, std::move(f)); }

    private:
        friend class Background;
        Task(Background* line, uint64_t number) : line_(line), number_(number) {}
        Background* line_;
        uint64_t number_;
    };

    /// With several threads a new request need not wait until the cancelled one has noticed.
    explicit Background(int threads = 1);
    ~Background() override;

    /// Calls `work(task)` on a worker and then `done(std::future of its result)` on the main thread; what work threw
    /// comes out of the future.
    template <class Work, class Done>
    void run(Work work, Done done);

    /// Asks what runs to stop; its result still comes.
    void cancel() const { current_.cancel(); }
    bool isBusy() const { return busy_; }

private:
    Task next();
    void start(std::function<void()> job);
    void deliver(uint64_t number, std::function<void()> f);

    uint64_t newest_ = 0;
    bool busy_ = false;
    CancelToken current_;
    QThreadPool pool_;
};

template <class Work, class Done>
void Background::run(Work work, Done done) {
    const Task task = next();
    using Result = decltype(work(task));
    start([this, task,
           job = std::make_shared<std::packaged_task<Result()>>([work, task] { return work(task); }),
           done]() mutable {
        auto result = std::make_shared<std::future<Result>>(job->get_future());
        (*job)();
        task.tell([this, result, done]() mutable {
            busy_ = false;
            done(std::move(*result));
        });
    });
}

} // namespace vh::app

#include "app/Background.h"

namespace vh::app {

Background::Background(int threads) {
    pool_.setMaxThreadCount(threads);
}

Background::~Background() {
    cancel();
    pool_.clear();
    pool_.waitForDone();
}

Background::Task Background::next() {
    cancel();
    pool_.clear();
    busy_ = true;
    Task task(this, ++newest_);
    current_ = task.cancel;
    return task;
}

void Background::start(std::function<void()> job) {
    pool_.start(std::move(job));
}

void Background::deliver(uint64_t number, std::function<void()> f) {
    // Safe although this runs on a worker: the object waits for its workers before it goes.
    QMetaObject::invokeMethod(
        this,
        [this, number, f = std::move(f)] {
            if (number == newest_)
                f();
        },
        Qt::QueuedConnection);
}

} // namespace vh::app

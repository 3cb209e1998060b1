#include "app/MainThreadDispatcher.h"

#include <QMetaObject>
#include <QObject>
#include <mutex>

namespace vh::app {

struct MainThreadDispatcher::Frame {
    std::mutex lock;
    QObject* object;
};

MainThreadDispatcher::MainThreadDispatcher(QObject* object) : frame_(std::make_shared<Frame>()) {
    frame_->object = object;
}

MainThreadDispatcher::~MainThreadDispatcher() {
    const std::lock_guard guard(frame_->lock);
    frame_->object = nullptr;
}

MainThreadDispatcher::Post MainThreadDispatcher::post() const {
    return [frame = frame_](std::function<void()> f) {
        const std::lock_guard guard(frame->lock);
        if (frame->object)
            QMetaObject::invokeMethod(frame->object, std::move(f), Qt::QueuedConnection);
    };
}

} // namespace vh::app

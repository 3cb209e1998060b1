#include "app/MainThreadDoor.h"

#include <QMetaObject>
#include <QObject>
#include <mutex>

namespace vh::app {

struct MainThreadDoor::Frame {
    std::mutex lock;
    QObject* object;
};

MainThreadDoor::MainThreadDoor(QObject* object) : frame_(std::make_shared<Frame>()) {
    frame_->object = object;
}

MainThreadDoor::~MainThreadDoor() {
    const std::lock_guard guard(frame_->lock);
    frame_->object = nullptr;
}

MainThreadDoor::Way MainThreadDoor::way() const {
    return [frame = frame_](std::function<void()> f) {
        const std::lock_guard guard(frame->lock);
        if (frame->object)
            QMetaObject::invokeMethod(frame->object, std::move(f), Qt::QueuedConnection);
    };
}

} // namespace vh::app

#pragma once

#include <functional>
#include <memory>

class QObject;

namespace vh::app {

/// A way from any thread to an object of the main thread, safe also when the object has gone meanwhile.
class MainThreadDoor {
public:
    /// `object` owns the door, and so closes it by going.
    explicit MainThreadDoor(QObject* object);
    ~MainThreadDoor();
    MainThreadDoor(const MainThreadDoor&) = delete;
    MainThreadDoor& operator=(const MainThreadDoor&) = delete;

    /// Calls its argument on the object's thread, later; drops it once the door is closed. May outlive the door.
    using Way = std::function<void(std::function<void()>)>;
    Way way() const;

private:
    struct Frame;
    std::shared_ptr<Frame> frame_;
};

} // namespace vh::app

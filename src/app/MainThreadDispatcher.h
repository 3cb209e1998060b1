#pragma once

#include <functional>
#include <memory>

class QObject;

namespace vh::app {

/// A way from any thread to an object of the main thread, safe also when the object has gone meanwhile.
class MainThreadDispatcher {
public:
    /// `object` owns the dispatcher, and so closes it by going.
    explicit MainThreadDispatcher(QObject* object);
    ~MainThreadDispatcher();
    MainThreadDispatcher(const MainThreadDispatcher&) = delete;
    MainThreadDispatcher& operator=(const MainThreadDispatcher&) = delete;

    /// Calls its argument on the object's thread, later; drops it once the dispatcher is closed. May outlive the dispatcher.
    using Post = std::function<void(std::function<void()>)>;
    Post post() const;

private:
    struct Frame;
    std::shared_ptr<Frame> frame_;
};

} // namespace vh::app
